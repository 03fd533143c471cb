#include "host/writers/json_writer.h"

#include <utf8proc.h>

#include <iterator>
#include <map>
#include <utility>

#include "host/labels/property_labels.h"
#include "host/source/ascii_case.h"
#include "px/vcrd.h"

namespace px {
namespace {

// How the lines of a kind stand in the summary.
enum class Form { Text, Lines, Objects };

struct SummaryKey {
  std::string_view name;
  Form form;
};

// In the order of SummaryKind.
constexpr SummaryKey kSummaryKeys[] = {
    {"name", Form::Text},     {"title", Form::Text},         {"organisation", Form::Lines},
    {"address", Form::Lines}, {"telephones", Form::Objects}, {"emails", Form::Objects},
    {"urls", Form::Lines},    {"summary", Form::Text},       {"location", Form::Text},
    {"start", Form::Text},    {"status", Form::Text},        {"lines", Form::Lines},
};
static_assert(std::size(kSummaryKeys) == static_cast<size_t>(SummaryKind::Entry) + 1);

const SummaryKey &keyOf(SummaryKind kind) { return kSummaryKeys[static_cast<size_t>(kind)]; }

// The name of a file can be any bytes.
std::string asUtf8(std::string_view bytes) {
  std::string utf8;
  while (!bytes.empty()) {
    utf8proc_int32_t character = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t *>(bytes.data()),
                                         static_cast<utf8proc_ssize_t>(bytes.size()), &character);
    const size_t taken = length > 0 ? static_cast<size_t>(length) : 1;
    utf8 += length > 0 ? bytes.substr(0, taken) : "\uFFFD";
    bytes.remove_prefix(taken);
  }
  return utf8;
}

// A parameter that comes twice is one key with the values of both.
void putParameters(const std::vector<Parameter> &parameters, JsonText *json) {
  std::map<std::string_view, std::vector<const Parameter *>> byName;
  for (const Parameter &parameter : parameters) byName[parameter.name].push_back(&parameter);
  json->key("params");
  json->startObject();
  for (const Parameter &parameter : parameters) {
    const auto &same = byName[parameter.name];
    if (same.front() != &parameter) continue;  // written with the first of its name
    json->string(parameter.name);
    json->startArray();
    for (const Parameter *each : same) {
      for (const std::string &value : each->values) json->string(value);
    }
    json->endArray();
  }
  json->endObject();
}

// What the head of a property tells behind its name.
void putHead(const Property &property, std::string_view name, JsonText *json) {
  if (!property.group.empty()) json->member("group", property.group);
  const std::string_view label = propertyLabel(property.label, name);
  if (!label.empty()) json->member("label", label);
  if (!property.parameters.empty()) putParameters(property.parameters, json);
}

// The name, as the value of its key, and what follows it.
std::string headInJson(const Property &property) {
  constexpr std::string_view before = R"({"name":)", behind = "}";
  std::string text;
  JsonText json([&text](std::string_view bytes) { text += bytes; });
  const std::string name = inCapitals(property.name);
  json.startObject();
  json.member("name", name);
  putHead(property, name, &json);
  json.endObject();
  json.flush();
  return text.substr(before.size(), text.size() - before.size() - behind.size());
}

}  // namespace

JsonWriter::JsonWriter(JsonForm form, ContentTypeOf contentTypeOf, TextSink sink)
    : form_(form), contentTypeOf_(std::move(contentTypeOf)), json_(std::move(sink)) {}

// Files and sections. Each section is a text of its own and stands on a line of its own.

void JsonWriter::beginFile(std::string_view name) {
  closeSection();
  file_ = asUtf8(name);
}

void JsonWriter::error(std::string_view file, std::string_view message) {
  closeSection();
  beginObject();
  if (!file.empty()) json_.member("file", asUtf8(file));
  json_.member("error", asUtf8(message));
  endObject();
}

void JsonWriter::beginObject() {
  if (form_ == JsonForm::Elements) json_.between(any_ ? ",\n" : "\n");
  any_ = true;
  json_.begin();
  json_.startObject();
}

void JsonWriter::endObject() {
  json_.endObject();
  if (form_ == JsonForm::Lines) json_.between("\n");
}

void JsonWriter::beginSection(const Section &section) {
  closeSection();
  beginObject();
  place_ = Place::Section;
  if (!file_.empty()) json_.member("file", file_);
  json_.member("section", section.number);
  const bool isVcard = section.format == VcardFormatVcard;
  json_.member("format", isVcard ? "vcard" : "vcalendar");
  if (!section.component.empty()) json_.member("component", section.component);
  if (!section.version.empty()) json_.member("version", section.version);
  member(section.extent);
  const bool isCard = section.component.empty() ? isVcard : section.component == "VCARD";
  if (section.partOf > 0) json_.member(isCard ? "agentOf" : "partOf", section.partOf);
}

void JsonWriter::endSection() { closeSection(); }

// Closes all that is open, also where a file has ended short.
void JsonWriter::closeSection() {
  if (place_ == Place::Outside) return;
  endProperty();
  openProperties();
  json_.endArray();
  endObject();
  place_ = Place::Outside;
}

// The summary. A key is open while lines of its kind come.

void JsonWriter::beginSummaryLine(SummaryKind kind, bool) {
  if (place_ != Place::Section && place_ != Place::Summary) return;
  place_ = Place::SummaryLine;
  lineKind_ = kind;
  lineWritten_ = false;
  breaks_ = 0;
}

void JsonWriter::endSummaryLine(const std::vector<std::string> &types) {
  if (place_ != Place::SummaryLine) return;
  place_ = kind_ ? Place::Summary : Place::Section;
  if (!lineWritten_) {
    divided_ = kind_ == SummaryKind::Address && lineKind_ == SummaryKind::Address;
    return;
  }
  const Form form = keyOf(lineKind_).form;
  if (form == Form::Text) return;  // a further line of the kind continues it
  endString();
  if (form == Form::Objects) {
    if (!types.empty()) json_.member("types", types);
    json_.endObject();
  }
}

void JsonWriter::summaryText(std::string_view utf8) {
  if (!lineWritten_ || breaks_ > 0) moveToSummaryLine();
  lineWritten_ = true;
  breaks_ = 0;
  json_.addToString(utf8);
}

void JsonWriter::moveToSummaryLine() {
  const SummaryKey &summaryKey = keyOf(lineKind_);
  const bool isFirst = kind_ != lineKind_;
  if (isFirst) {
    if (kind_) {
      endSummaryKind();
    } else {
      json_.key("summary");
      json_.startObject();
    }
    json_.key(summaryKey.name);
    if (summaryKey.form != Form::Text) json_.startArray();
    kind_ = lineKind_;
    divided_ = false;
  }
  if (summaryKey.form == Form::Lines) {
    if (inString_) endString();
    if (std::exchange(divided_, false)) json_.string("");
    beginString();
  } else if (summaryKey.form == Form::Objects && !lineWritten_) {
    json_.startObject();
    json_.key("value");
    beginString();
  } else if (isFirst) {
    beginString();
  } else {
    json_.addToString("\n");
  }
}

void JsonWriter::endSummaryKind() {
  if (inString_) endString();
  if (keyOf(*kind_).form != Form::Text) json_.endArray();
}

// Ends the summary and begins the properties, unless they have begun.
void JsonWriter::openProperties() {
  if (place_ == Place::SummaryLine) endSummaryLine({});
  if (kind_) {
    endSummaryKind();
    json_.endObject();
    kind_.reset();
  }
  if (place_ == Place::Properties) return;
  json_.key("properties");
  json_.startArray();
  place_ = Place::Properties;
}

// Properties.

void JsonWriter::beginProperty(const Property &property) {
  if (place_ == Place::Outside) return;
  endProperty();
  openProperties();
  place_ = Place::Property;
  value_ = Value::None;
  extent_ = property.extent;
  json_.startObject();
  if (property.name.empty()) {
    putHead(property, {}, &json_);
  } else {
    json_.key("name");
    json_.quoted(heads_.of(property, headInJson));
  }
  late_.clear();
  takesLate_ = property.parameters.empty();
}

void JsonWriter::beginField(uint32_t) {
  if (place_ != Place::Property) return;
  if (value_ == Value::None) {
    json_.key("value");
    json_.startArray();
    value_ = Value::Fields;
    beginString();
  } else if (value_ == Value::Fields) {
    endString();
    beginString();
  } else {
    text("\n");
  }
}

void JsonWriter::text(std::string_view utf8) {
  if (utf8.empty()) return;
  if (place_ == Place::SummaryLine) {
    summaryText(utf8);
  } else if (place_ == Place::Property) {
    if (value_ == Value::None) {
      json_.key("value");
      beginString();
      value_ = Value::Text;
    }
    if (inString_) json_.addToString(utf8);
  }
}

void JsonWriter::lineBreak() {
  if (place_ == Place::SummaryLine) {
    breaks_ += lineWritten_;
  } else {
    text("\n");
  }
}

void JsonWriter::object(const PlacedObject &object) {
  if (place_ != Place::Property || value_ != Value::None) return;
  const ObjectContent content = examineContent(object, contentTypeOf_);
  json_.key("object");
  json_.startObject();
  json_.member("type", asUtf8(content.type));
  json_.member("size", content.size);
  member(object.extent);
  if (!object.title.empty()) json_.member("title", object.title);
  json_.endObject();
  value_ = Value::Object;
}

void JsonWriter::lateParameter(const Parameter &parameter) {
  if (place_ == Place::Property && takesLate_) late_.push_back(parameter);
}

void JsonWriter::endProperty() {
  if (place_ != Place::Property) return;
  if (value_ == Value::None) json_.member("value", "");
  if (inString_) endString();
  if (value_ == Value::Fields) json_.endArray();
  if (!late_.empty()) putParameters(late_, &json_);
  member(extent_);
  json_.endObject();
  place_ = Place::Properties;
}

void JsonWriter::beginString() {
  json_.beginString();
  inString_ = true;
}

void JsonWriter::endString() {
  json_.endString();
  inString_ = false;
}

void JsonWriter::member(const std::optional<Extent> &extent) {
  if (!extent) return;
  json_.member("offset", extent->offset);
  json_.member("length", extent->length);
}

}  // namespace px

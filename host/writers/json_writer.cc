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

}  // namespace

JsonWriter::JsonWriter(JsonForm form, ContentTypeOf contentTypeOf, TextSink sink)
    : form_(form), contentTypeOf_(std::move(contentTypeOf)), stream_(std::move(sink)) {}

// Files and sections. Each section is a text of its own to the RapidJSON writer, so the writer's
// state doesn't grow, and stands on a line of its own.

void JsonWriter::beginFile(std::string_view name) {
  closeSection();
  file_ = asUtf8(name);
}

void JsonWriter::error(std::string_view file, std::string_view message) {
  closeSection();
  beginObject();
  member("file", asUtf8(file));
  member("error", asUtf8(message));
  endObject();
}

void JsonWriter::beginObject() {
  if (form_ == JsonForm::Elements) stream_.put(any_ ? ",\n" : "\n");
  any_ = true;
  writer_.Reset(stream_);
  writer_.StartObject();
}

void JsonWriter::endObject() {
  writer_.EndObject();
  if (form_ == JsonForm::Lines) stream_.put("\n");
}

void JsonWriter::beginSection(const Section &section) {
  closeSection();
  beginObject();
  place_ = Place::Section;
  member("file", file_);
  member("section", section.number);
  const bool isVcard = section.format == VcardFormatVcard;
  member("format", isVcard ? "vcard" : "vcalendar");
  if (!section.component.empty()) member("component", section.component);
  if (!section.version.empty()) member("version", section.version);
  member(section.extent);
  const bool isCard = section.component.empty() ? isVcard : section.component == "VCARD";
  if (section.partOf > 0) member(isCard ? "agentOf" : "partOf", section.partOf);
}

void JsonWriter::endSection() { closeSection(); }

// Closes all that is open, also where a file has ended short.
void JsonWriter::closeSection() {
  if (place_ == Place::Outside) return;
  endProperty();
  openProperties();
  writer_.EndArray();
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
    if (!types.empty()) member("types", types);
    writer_.EndObject();
  }
}

void JsonWriter::summaryText(std::string_view utf8) {
  if (!lineWritten_ || breaks_ > 0) moveToSummaryLine();
  lineWritten_ = true;
  breaks_ = 0;
  stream_.putEscaped(utf8);
}

void JsonWriter::moveToSummaryLine() {
  const SummaryKey &summaryKey = keyOf(lineKind_);
  const bool isFirst = kind_ != lineKind_;
  if (isFirst) {
    if (kind_) {
      endSummaryKind();
    } else {
      key("summary");
      writer_.StartObject();
    }
    key(summaryKey.name);
    if (summaryKey.form != Form::Text) writer_.StartArray();
    kind_ = lineKind_;
    divided_ = false;
  }
  if (summaryKey.form == Form::Lines) {
    if (inString_) endString();
    if (std::exchange(divided_, false)) string("");
    beginString();
  } else if (summaryKey.form == Form::Objects && !lineWritten_) {
    writer_.StartObject();
    key("value");
    beginString();
  } else if (isFirst) {
    beginString();
  } else {
    stream_.putEscaped("\n");
  }
}

void JsonWriter::endSummaryKind() {
  if (inString_) endString();
  if (keyOf(*kind_).form != Form::Text) writer_.EndArray();
}

// Ends the summary and begins the properties, unless they have begun.
void JsonWriter::openProperties() {
  if (place_ == Place::SummaryLine) endSummaryLine({});
  if (kind_) {
    endSummaryKind();
    writer_.EndObject();
    kind_.reset();
  }
  if (place_ == Place::Properties) return;
  key("properties");
  writer_.StartArray();
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
  writer_.StartObject();
  const std::string name = inCapitals(property.name);
  if (!name.empty()) member("name", name);
  if (!property.group.empty()) member("group", property.group);
  const std::string_view label = propertyLabel(property.label, name);
  if (!label.empty()) member("label", label);
  late_.clear();
  takesLate_ = property.parameters.empty();
  if (!takesLate_) parameters(property.parameters);
}

void JsonWriter::beginField(uint32_t) {
  if (place_ != Place::Property) return;
  if (value_ == Value::None) {
    key("value");
    writer_.StartArray();
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
      key("value");
      beginString();
      value_ = Value::Text;
    }
    if (inString_) stream_.putEscaped(utf8);
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
  key("object");
  writer_.StartObject();
  member("type", asUtf8(content.type));
  member("size", content.size);
  member(object.extent);
  if (!object.title.empty()) member("title", object.title);
  writer_.EndObject();
  value_ = Value::Object;
}

void JsonWriter::lateParameter(const Parameter &parameter) {
  if (place_ == Place::Property && takesLate_) late_.push_back(parameter);
}

void JsonWriter::endProperty() {
  if (place_ != Place::Property) return;
  if (value_ == Value::None) member("value", "");
  if (inString_) endString();
  if (value_ == Value::Fields) writer_.EndArray();
  if (!late_.empty()) parameters(late_);
  member(extent_);
  writer_.EndObject();
  place_ = Place::Properties;
}

// A parameter that comes twice is one key with the values of both.
void JsonWriter::parameters(const std::vector<Parameter> &parameters) {
  std::map<std::string_view, std::vector<const Parameter *>> byName;
  for (const Parameter &parameter : parameters) byName[parameter.name].push_back(&parameter);
  key("params");
  writer_.StartObject();
  for (const Parameter &parameter : parameters) {
    const auto &same = byName[parameter.name];
    if (same.front() != &parameter) continue;  // written with the first of its name
    string(parameter.name);
    writer_.StartArray();
    for (const Parameter *each : same) {
      for (const std::string &value : each->values) string(value);
    }
    writer_.EndArray();
  }
  writer_.EndObject();
}

// Members and strings. A string comes in pieces, which RapidJSON's writer doesn't do: it is told of
// the opening quote only, and what follows goes to the stream.

void JsonWriter::key(std::string_view name) { string(name); }

void JsonWriter::beginString() {
  writer_.RawValue("\"", 1, rapidjson::kStringType);
  inString_ = true;
}

void JsonWriter::endString() {
  stream_.Put('"');
  inString_ = false;
}

void JsonWriter::string(std::string_view utf8) {
  beginString();
  stream_.putEscaped(utf8);
  endString();
}

void JsonWriter::member(std::string_view name, std::string_view utf8) {
  key(name);
  string(utf8);
}

void JsonWriter::member(std::string_view name, uint64_t number) {
  key(name);
  writer_.Uint64(number);
}

void JsonWriter::member(std::string_view name, const std::vector<std::string> &values) {
  key(name);
  writer_.StartArray();
  for (const std::string &value : values) string(value);
  writer_.EndArray();
}

void JsonWriter::member(const std::optional<Extent> &extent) {
  if (!extent) return;
  member("offset", extent->offset);
  member("length", extent->length);
}

}  // namespace px

#include "host/reading/property_reader.h"

#include <algorithm>
#include <iterator>
#include <new>

#include "host/reading/type_list.h"
#include "host/source/ascii_case.h"
#include "host/source/content_lines.h"
#include "host/source/line_parameters.h"
#include "host/source/value_text.h"

namespace px {
namespace {

constexpr size_t kLongestList = 64 * 1024;

constexpr uint32_t kAttendeeLabel = 79360;
constexpr uint32_t kReferenceLabels[] = {79386, 79387};  // of a picture that lies elsewhere

struct AttendeeRow {
  uint32_t label;
  const char *parameter;
};
constexpr AttendeeRow kAttendeeRows[] = {
    {79404, "ROLE"}, {85564, "STATUS"}, {79385, "RSVP"}, {79384, "EXPECT"}};

class PlacedBase64 final : public PlacedObject {
 public:
  PlacedBase64(const FilterLibrary &filter, VcardStream *stream, const Extent &where)
      : filter_(filter), stream_(stream) {
    place = where;
  }

  OpenIo open() const override { return openPlaced(filter_, stream_, place); }

 private:
  const FilterLibrary &filter_;
  VcardStream *stream_;
};

}  // namespace

OpenIo openPlaced(const FilterLibrary &filter, VcardStream *stream, const Extent &place) {
  constexpr uint32_t base64 = 2;
  VcardIo *opened = nullptr;
  // The ranges that the filter gives are never empty, so what fails is memory.
  if (filter.doSpecial(stream, place.offset, &opened, place.length, 0, base64) != 0)
    throw std::bad_alloc();
  return OpenIo(opened);
}

void PropertyReader::beginRun(int16_t format, VcardStream *stream) {
  format_ = format;
  stream_ = stream;
}

// The calls.

void PropertyReader::begin() {
  end();
  place_ = Place::Label;
  property_.label = 0;
  property_.name.clear();
  list_.clear();
  types_.clear();
  inSubLabel_ = false;
}

void PropertyReader::style(StyleRole role) {
  inSubLabel_ = role == StyleRole::SubLabel;
  if (role == StyleRole::Plain && place_ == Place::Label) place_ = Place::List;
  if (role == StyleRole::SubLabel && isHead()) beginValue();
}

void PropertyReader::text(std::string_view utf8) {
  if (place_ == Place::Label) {
    property_.name += utf8.substr(0, kLongestList - std::min(kLongestList, property_.name.size()));
  } else if (place_ == Place::List) {
    list_ += utf8.substr(0, kLongestList - std::min(kLongestList, list_.size()));
  } else if (place_ == Place::Value && !inSubLabel_) {
    valueText(utf8);
  }
}

void PropertyReader::beginString() {
  if (place_ == Place::Value && known_ && known_->form == PropertyForm::Lines) beginLineField();
}

void PropertyReader::label(uint32_t id) {
  if (place_ == Place::Label) {
    property_.label = id;
  } else if (place_ == Place::List) {
    list_.clear();
    types_.emplace_back(typeOfLabel(id));
  } else if (place_ == Place::Value && inSubLabel_) {
    beginField(id);
  }
}

void PropertyReader::lineBreak() {
  if (isHead()) {
    beginValue();
  } else if (place_ == Place::Value && !inSubLabel_) {
    valueBreak();
  }
}

void PropertyReader::tab() {
  if (isHead()) beginValue();
  if (place_ != Place::Value || inSubLabel_) return;
  if (tabsDue_ > 0) {
    --tabsDue_;
  } else {
    valueText("\t");
  }
}

void PropertyReader::separator() {
  if (place_ != Place::List) return;
  // Behind an entry that came as text, which is a type of somebody's own.
  if (list_.starts_with(TypesBegin)) list_.erase(0, TypesBegin.size());
  if (!list_.empty()) types_.push_back(inSmallLetters(list_));
  list_.clear();
}

// The head is complete.
void PropertyReader::beginValue() {
  place_ = Place::Value;
  known_ = property_.label != 0 ? propertyOfLabel(property_.label, format_) : nullptr;
  line_ = section_ ? noteOfLine() : nullptr;
  muted_ = line_ && line_->dropped;
  property_.groupLabel.clear();
  if (line_) {
    join();
  } else {
    takeList();
    types_.clear();
    if (known_) property_.name = known_->name;
    property_.group.clear();
    property_.labelsGroup = false;
    property_.extent.reset();
  }
  fields_ = 0;
  fieldOpen_ = skipsField_ = blankHeld_ = false;
  breaks_ = 0;
  tabsDue_ = 2;
  if (!muted_) events_.beginProperty(property_);
}

// The text behind the label: the rest of a list of types, or all parameters of a property that the
// filter doesn't know.
void PropertyReader::takeList() {
  if (property_.label == 0 && list_.starts_with(ParametersBegin) && list_.ends_with(ListEnd) &&
      list_.size() >= ParametersBegin.size() + ListEnd.size()) {
    const std::string_view text = std::string_view(list_).substr(
        ParametersBegin.size(), list_.size() - ParametersBegin.size() - ListEnd.size());
    std::vector<HeadParameter> split;
    splitParameters(text, ContentLines::MostParameters, &split);
    property_.parameters = parametersOf(split, VersionRules());
    property_.types = typesOf(property_.parameters);
  } else {
    property_.parameters.resize(types_.empty() ? 0 : 1);
    for (Parameter &parameter : property_.parameters) {
      parameter.name = "TYPE";
      parameter.values = types_;
    }
    property_.types.swap(types_);
  }
}

// The next note, if it is of the property whose head the calls have told; null when it isn't.
const LineNote *PropertyReader::noteOfLine() {
  if (!notes_->nextLine(&note_)) return nullptr;
  const bool same = note_.callLabel == property_.label &&
                    (property_.label != 0 || note_.callName == property_.name);
  return same ? &note_ : nullptr;
}

void PropertyReader::join() {
  const LineHead &head = *line_->head;
  property_.label = head.label;
  property_.name = head.name;
  property_.group = head.group;
  property_.labelsGroup = line_->labelsGroup;
  property_.parameters = head.parameters;
  property_.types = head.types;
  property_.extent = line_->extent;
  for (const auto &[group, label] : section_->groupLabels) {
    if (group == property_.group && !property_.labelsGroup) property_.groupLabel = label;
  }
  // Two properties can have one label.
  if (line_->callLabel != 0 && head.known && head.known->label == line_->callLabel) {
    known_ = head.known;
  }
}

void PropertyReader::putBreaks(uint32_t count) {
  for (uint32_t i = 0; i < count && !muted_ && !skipsField_; ++i) events_.lineBreak();
}

void PropertyReader::valueText(std::string_view utf8) {
  tabsDue_ = 0;
  if (blankHeld_ && breaks_ == 0 && !muted_) events_.text(" ");
  blankHeld_ = false;
  putBreaks(breaks_);
  breaks_ = 0;
  if (skipsField_) {
    late_.values.back() += utf8;
    return;
  }
  if (muted_) return;
  if (!line_ || line_->callLabel != 0) {
    events_.text(utf8);
    return;
  }
  // Plain text of a view: fields are divided in it, and a line end comes behind a blank.
  blankHeld_ = utf8.ends_with(' ');
  if (blankHeld_) utf8.remove_suffix(1);
  if (!line_->fieldsInText) {
    if (!utf8.empty()) events_.text(utf8);
    return;
  }
  const KnownProperty *row = line_->head->known;
  for (;;) {
    if (fields_ == 0) beginField(row && !row->fields.empty() ? row->fields[0] : 0);
    const size_t end = std::min(utf8.find(FieldDivider), utf8.size());
    tabsDue_ = 0;  // the divider is all the layout there is
    if (end > 0) events_.text(utf8.substr(0, end));
    if (end == utf8.size()) return;
    beginField(row && fields_ < row->fields.size() ? row->fields[fields_] : 0);
    utf8.remove_prefix(end + 1);
  }
}

void PropertyReader::valueBreak() {
  ++breaks_;
  const bool plainText = line_ ? line_->callLabel == 0 : property_.label == 0;
  tabsDue_ = plainText ? 0 : 2;
}

// Fields. The break behind a field belongs to it.

void PropertyReader::beginField(uint32_t label) {
  if (std::find(std::begin(kReferenceLabels), std::end(kReferenceLabels), label) !=
      std::end(kReferenceLabels)) {
    breaks_ = 0;
    tabsDue_ = 1;
    return;  // the text behind it is the value
  }
  endField();
  tabsDue_ = 1;
  if (property_.label == kAttendeeLabel) {
    breaks_ = 0;
    const auto *row = std::find_if(std::begin(kAttendeeRows), std::end(kAttendeeRows),
                                   [&](const AttendeeRow &r) { return r.label == label; });
    late_ = {row != std::end(kAttendeeRows) ? row->parameter : "", {""}};
    skipsField_ = fieldOpen_ = true;
    return;
  }
  // An alarm doesn't show its empty fields.
  if (known_ && known_->form == PropertyForm::Rows) {
    const auto fields = known_->fields;
    const auto at =
        static_cast<size_t>(std::find(fields.begin(), fields.end(), label) - fields.begin());
    for (; fields_ < at && at < fields.size(); ++fields_) {
      if (!muted_) events_.beginField(fields[fields_]);
    }
  }
  fieldOpen_ = true;
  ++fields_;
  if (!muted_) events_.beginField(label);
}

// A field of a value of lines begins with its string. The notes tell of those that are empty and
// don't show.
void PropertyReader::beginLineField() {
  if (fields_ > 0 && breaks_ == 0) return;  // the default set, behind a string
  endField();
  for (; line_ && fields_ < line_->fieldCount && (line_->emptyFields >> fields_ & 1) != 0;
       ++fields_) {
    if (!muted_) events_.beginField(0);
  }
  fieldOpen_ = true;
  ++fields_;
  tabsDue_ = 0;
  if (!muted_) events_.beginField(0);
}

void PropertyReader::endField() {
  if (!fieldOpen_) return;
  if (breaks_ > 1) putBreaks(breaks_ - 1);
  breaks_ = 0;
  if (skipsField_ && !muted_) events_.lateParameter(late_);
  fieldOpen_ = skipsField_ = false;
}

void PropertyReader::end() {
  if (place_ == Place::Nothing) return;
  if (place_ != Place::Value) beginValue();
  if (blankHeld_ && breaks_ <= 1 && !muted_) events_.text(" ");
  if (fieldOpen_) {
    endField();
  } else {
    // The last break is the paragraph's.
    const uint32_t layout = line_ && line_->breakAdded ? 2 : 1;
    if (breaks_ > layout) putBreaks(breaks_ - layout);
  }
  breaks_ = 0;
  if (line_ && line_->fieldsInText && !muted_) {
    const KnownProperty *row = line_->head->known;
    const size_t count = row ? row->fields.size() : 0;
    while (fields_ < std::max<size_t>(count, 1))
      beginField(fields_ < count ? row->fields[fields_] : 0);
    fieldOpen_ = false;
  } else if (known_ && property_.label != kAttendeeLabel && !muted_) {
    const size_t count = known_->form == PropertyForm::Rows ? known_->fields.size() : 0;
    for (; fields_ < count; ++fields_) events_.beginField(known_->fields[fields_]);
    for (; line_ && fields_ < line_->fieldCount; ++fields_) events_.beginField(0);
  }
  if (!muted_) events_.endProperty();
  place_ = Place::Nothing;
}

// Objects.

void PropertyReader::object(const Extent &place, const std::string &title) {
  if (place_ != Place::Value) beginValue();
  PlacedBase64 object(filter_, stream_, place);
  object.title = title;
  if (line_ && line_->data) {
    if (line_->extent) object.extent = line_->data;
    object.size = line_->dataSize;
    object.declaredType = line_->dataType;
    for (const char *name : {"FILENAME", "X-FILENAME", "X-APPLE-FILENAME"}) {
      const std::string *own = valueOf(line_->head->parameters, name);
      if (own) {
        object.title = *own;
        break;
      }
    }
  }
  breaks_ = 0;
  if (!muted_) events_.object(object);
}

}  // namespace px

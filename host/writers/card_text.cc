#include "host/writers/card_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/labels/label_texts.h"
#include "host/labels/property_labels.h"
#include "host/source/ascii_case.h"
#include "host/source/utf8.h"
#include "host/writers/dates.h"

namespace px {
namespace {

constexpr uint32_t kLabelIndent = 4;    // of a label's further lines
constexpr uint32_t kRunTimeId = 79355;  // of an alarm's field
constexpr size_t kLongestLast = 512;    // bytes of a value that is held for the section's end
constexpr size_t kMostLast = 8;         // rows

constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kDim = "\x1b[2m";
constexpr std::string_view kPlain = "\x1b[0m";

// A property by its string id, or by its name where the calls don't tell the one or the other.
struct Mark {
  uint32_t label;
  std::string_view name;
};

constexpr Mark kDates[] = {
    {79364, "CREATED"},  {79364, "DCREATED"},  {79365, "COMPLETED"},     {79368, "DUE"},
    {79369, "DTEND"},    {79370, "EXDATE"},    {79372, "LAST-MODIFIED"}, {79378, "RDATE"},
    {79382, "DTSTART"},  {79391, "BDAY"},      {79403, "REV"},           {0, "ANNIVERSARY"},
    {0, "ACKNOWLEDGED"}, {0, "DEATHDATE"},     {0, "DTSTAMP"},           {0, "RECURRENCE-ID"},
    {0, "X-ABDATE"},     {0, "X-ANNIVERSARY"},
};
constexpr Mark kMedia[] = {{79396, "LOGO"}, {79402, "PHOTO"}, {79405, "SOUND"}};
constexpr Mark kKeys[] = {{79395, "KEY"}};
constexpr Mark kLast[] = {{79411, "VERSION"}, {0, "PRODID"}};

template <size_t N>
bool isOneOf(const Mark (&marks)[N], uint32_t label, std::string_view name) {
  return std::any_of(std::begin(marks), std::end(marks), [label, name](const Mark &mark) {
    return name.empty() ? label != 0 && mark.label == label : mark.name == name;
  });
}

// Parameters that tell how the value is written down; the value shows it no longer.
constexpr std::string_view kHidden[] = {"CHARSET", "ENCODING"};

// Of a property with a label: parameters that stand behind it, with what stands before their value.
constexpr std::pair<std::string_view, std::string_view> kAdditions[] = {
    {"FBTYPE", ""},  {"LANGUAGE", "language "}, {"RANGE", "range "}, {"RELATED", "related to "},
    {"RELTYPE", ""}, {"X-SERVICE-TYPE", ""},
};

void addTo(std::string *list, std::string_view entry) {
  if (entry.empty()) return;
  if (!list->empty()) *list += ", ";
  *list += entry;
}

std::string joined(const std::vector<std::string> &values) {
  std::string list;
  for (const std::string &value : values) {
    if (!list.empty()) list += ',';
    list += value;
  }
  return list;
}

// "_$!<HomePage>!$_" is how an address book marks a label of its own.
std::string_view cleanLabel(std::string_view label) {
  constexpr std::string_view before = "_$!<", behind = ">!$_";
  if (!label.starts_with(before) || !label.ends_with(behind) ||
      label.size() < before.size() + behind.size()) {
    return label;
  }
  label.remove_prefix(before.size());
  label.remove_suffix(behind.size());
  return label;
}

// Which lines of the summary stand together.
int blockOf(SummaryKind kind) {
  switch (kind) {
    case SummaryKind::Address:
    case SummaryKind::Telephone:
    case SummaryKind::Email:
    case SummaryKind::Url:
      return static_cast<int>(kind);
    default:
      return -1;
  }
}

bool isHeading(SummaryKind kind) {
  return kind == SummaryKind::Name || kind == SummaryKind::Title ||
         kind == SummaryKind::Organisation || kind == SummaryKind::Summary;
}

bool isTimeZoneRule(std::string_view component) {
  return component == "VTIMEZONE" || component == "STANDARD" || component == "DAYLIGHT";
}

}  // namespace

CardText::CardText(const TextLook &look, ContentTypeOf contentTypeOf, TextSink sink)
    : look_(look),
      contentTypeOf_(std::move(contentTypeOf)),
      lines_(look.columns(), std::move(sink)) {}

void CardText::finish() {
  endSection();
  lines_.endLine();
  lines_.flush();
}

// Sections.

void CardText::beginSection(const Section &section) {
  endSection();
  inSection_ = true;
  isShown_ = !isTimeZoneRule(section.component);
  isAlarm_ = alarmDue_ = section.component == "VALARM";
  hasSummary_ = isShown_ && !isAlarm_ && section.component != "VCALENDAR";
  if (!isShown_ || isAlarm_) return;
  ruleDue_ = wroteAny_;
  wroteSummary_ = inListing_ = false;
}

void CardText::endSection() {
  if (!inSection_) return;
  endSummaryLine({});
  endProperty();
  for (Row &row : std::exchange(last_, {})) {
    label_ = std::move(row.label);
    group_.clear();
    additions_.clear();
    place_ = Place::Text;
    putLines(row.value);
    endProperty();
  }
  lines_.endLine();
  inSection_ = false;
}

// Writes what divides the section from the text above it.
void CardText::beginSectionText() {
  wroteAny_ = true;
  if (!std::exchange(ruleDue_, false)) return;
  lines_.skipLine();
  writeRule('=');
  lines_.skipLine();
}

void CardText::writeRule(char sign) { lines_.write(std::string(look_.ruleLength(), sign)); }

// The summary.

void CardText::beginSummaryLine(SummaryKind kind, bool) {
  if (!inSection_ || !hasSummary_) return;
  inSummary_ = true;
  kind_ = kind;
  isOpen_ = false;
  breaks_ = 0;
  place_ = kind == SummaryKind::Start ? Place::Date : Place::Text;
}

void CardText::endSummaryLine(const std::vector<std::string> &types) {
  if (!inSummary_) return;
  putHeld();
  if (isOpen_) {
    std::string list;
    for (const std::string &type : types) addTo(&list, typeLabel(type));
    if (!list.empty()) lines_.write(" (" + list + ")");
    if (underline_ && look_.color) lines_.addSequence(kPlain);
    lines_.endLine();
    if (underline_) {
      lines_.write(std::string(std::min(lines_.takeWidest(), look_.ruleLength()), '='));
      lines_.endLine();
    }
    lastKind_ = kind_;
  } else {
    divided_ = kind_ == SummaryKind::Address;
  }
  inSummary_ = underline_ = isOpen_ = false;
  breaks_ = 0;
  place_ = Place::Nowhere;
}

void CardText::moveToSummary() {
  if (!isOpen_) {
    beginSectionText();
    lines_.setIndent(0);
    if (!wroteSummary_) {
      underline_ = isHeading(kind_);
      lines_.takeWidest();
      if (underline_ && look_.color) lines_.addSequence(kBold);
    } else if (blockOf(kind_) != blockOf(lastKind_) || divided_) {
      lines_.skipLine();
    }
    divided_ = false;
    isOpen_ = wroteSummary_ = true;
  } else if (breaks_ > 0) {
    lines_.endLine();
    for (uint32_t i = 1; i < breaks_; ++i) lines_.skipLine();
  }
  breaks_ = 0;
}

// Properties. Label, types and sub-label are written with the value's first character, so a
// property without a value leaves nothing.

void CardText::beginProperty(const Property &property) {
  endProperty();
  if (!inSection_ || !isShown_ || property.labelsGroup) return;
  describe(property);
}

void CardText::describe(const Property &property) {
  const std::string name = inCapitals(property.name);
  const uint32_t id = property.label;
  const std::string_view text = propertyLabel(id, name);
  isLabelled_ = !text.empty();
  label_.clear();
  appendPrintable(isLabelled_ ? text : property.name, &label_);
  group_.clear();
  appendPrintable(cleanLabel(property.groupLabel), &group_);
  additions_.clear();
  isKey_ = isOneOf(kKeys, id, name);
  const bool isMedia = isOneOf(kMedia, id, name);
  if (isLabelled_ && !isMedia) {
    for (const std::string &type : property.types) addTo(&additions_, typeLabel(type));
  } else if (!isLabelled_ && property.parameters.empty() && !property.types.empty()) {
    additions_ = "TYPE=" + joined(property.types);
  }
  isDate_ = isOneOf(kDates, id, name);
  const bool isLast = isOneOf(kLast, id, name) && !isAlarm_;
  place_ = isDate_ ? Place::Date : isLast ? Place::Last : Place::Text;
  if (isMedia) return;
  for (const Parameter &parameter : property.parameters) describeParameter(parameter);
}

void CardText::describeParameter(const Parameter &parameter) {
  const std::string_view name = parameter.name;
  const std::string values = joined(parameter.values);
  if (isDate_ && name == "TZID") {
    timeZone_ = values;
  } else if (isDate_ && name == "X-APPLE-OMIT-YEAR") {
    omittedYear_ = values;
  } else if (!isLabelled_) {
    const bool isHidden =
        std::find(std::begin(kHidden), std::end(kHidden), name) != std::end(kHidden);
    if (!isHidden) addTo(&additions_, std::string(name) + "=" + values);
  } else if (const std::string_view label = parameterLabel(name); !label.empty()) {
    rows_.push_back({std::string(label), values});
  } else if (name == "PREF" && values == "1") {
    const std::string_view preferred = typeLabel("pref");
    if (additions_.find(preferred) == std::string::npos) addTo(&additions_, preferred);
  } else {
    for (const auto &[shown, lead] : kAdditions) {
      if (shown == name) addTo(&additions_, std::string(lead) + values);
    }
  }
}

void CardText::beginField(uint32_t label) {
  if (place_ == Place::Nowhere || inSummary_) return;
  putHeld();
  if (place_ != Place::Last) place_ = isDate_ || label == kRunTimeId ? Place::Date : Place::Text;
  fieldLabel_ = labelText(label);
  isOpen_ = false;
  breaks_ = 0;
}

void CardText::object(const PlacedObject &object) {
  if (place_ == Place::Nowhere || inSummary_) return;
  putHeld();
  place_ = Place::Text;
  if (!isKey_) additions_.clear();
  const ObjectContent content = examineContent(object, contentTypeOf_);
  put("[");
  put(object.title.empty() ? label_ : object.title);
  put(": ");
  put(contentKind(content.type));
  put(", ");
  put(sizeInWords(content.size));
  put("]");
}

void CardText::lateParameter(const Parameter &parameter) {
  if (place_ != Place::Nowhere) describeParameter(parameter);
}

void CardText::endProperty() {
  if (place_ == Place::Nowhere) return;
  if (place_ == Place::Last && !held_.empty() && last_.size() < kMostLast) {
    last_.push_back({heading(), std::exchange(held_, {})});
  }
  putHeld();
  if (isOpen_ && !timeZone_.empty()) put(" " + timeZone_);
  if (labelWritten_) {
    for (const Row &row : rows_) {
      fieldLabel_ = row.label;
      isOpen_ = false;
      breaks_ = 0;
      putLines(row.value);
    }
  }
  lines_.endLine();
  place_ = Place::Nowhere;
  fieldLabel_ = {};
  labelWritten_ = isOpen_ = false;
  breaks_ = 0;
  rows_.clear();
  timeZone_.clear();
  omittedYear_.clear();
}

// The label with what stands in parentheses behind it.
std::string CardText::heading() const {
  std::string list(group_);
  addTo(&list, additions_);
  return list.empty() ? label_ : label_ + (label_.empty() ? "(" : " (") + list + ")";
}

void CardText::moveToValue() {
  if (!labelWritten_) {
    beginListing();
    if (isAlarm_) {
      writeSubLabel(heading());
    } else {
      lines_.setIndent(kLabelIndent);
      writeStyled(heading(), kDim);
    }
    labelWritten_ = true;
  }
  if (!isOpen_) {
    if (!fieldLabel_.empty()) writeSubLabel(fieldLabel_);
    if (lines_.column() > TextLook::ValueColumn - TextLook::Gap) lines_.endLine();
  } else {
    lines_.endLine();
    for (uint32_t i = 1; i < breaks_; ++i) lines_.skipLine();
  }
  lines_.padTo(TextLook::ValueColumn);
  lines_.setIndent(TextLook::ValueColumn);
  isOpen_ = true;
  breaks_ = 0;
}

void CardText::beginListing() {
  beginSectionText();
  if (!inListing_ && wroteSummary_) {
    lines_.skipLine();
    writeRule('-');
    lines_.endLine();
  }
  inListing_ = true;
  if (std::exchange(alarmDue_, false)) {
    lines_.setIndent(kLabelIndent);
    writeStyled("Alarm", kDim);
    lines_.endLine();
  }
}

void CardText::writeSubLabel(std::string_view label) {
  lines_.endLine();
  const uint32_t width = displayWidth(label);
  const uint32_t room = TextLook::ValueColumn - TextLook::Gap;
  lines_.padTo(width < room ? room - width : 0);
  lines_.setIndent(kLabelIndent);
  writeStyled(label, kDim);
}

void CardText::writeStyled(std::string_view utf8, std::string_view sequence) {
  if (look_.color) lines_.addSequence(sequence);
  lines_.write(utf8);
  if (look_.color) lines_.addSequence(kPlain);
}

// Text.

void CardText::text(std::string_view utf8) {
  switch (place_) {
    case Place::Nowhere:
      break;
    case Place::Text:
      put(utf8);
      break;
    case Place::Date:
      holdDates(utf8);
      break;
    case Place::Last:
      held_ += utf8;
      if (held_.size() > kLongestLast) {
        putHeld();
        place_ = Place::Text;
      }
      break;
  }
}

void CardText::lineBreak() {
  if (place_ == Place::Last) {
    if (!held_.empty()) held_ += '\n';
    return;
  }
  putHeld();
  breaks_ += isOpen_;
}

// Dates come alone, in lists and in pairs.
void CardText::holdDates(std::string_view utf8) {
  while (!utf8.empty()) {
    const size_t end = std::min(utf8.find_first_of(",;/"), utf8.size());
    held_ += utf8.substr(0, end);
    if (held_.size() > LongestDate) {  // it is none
      putHeld();
      place_ = Place::Text;
      put(utf8.substr(end));
      return;
    }
    if (end == utf8.size()) return;
    putHeld();
    put(utf8.substr(end, 1));
    separated_ = utf8[end] != '/';
    utf8.remove_prefix(end + 1);
  }
}

// Puts what is held, if anything is.
void CardText::putHeld() {
  if (held_.empty()) {
    if (place_ == Place::Date) separated_ = false;
    return;
  }
  const std::string text = std::exchange(held_, {});
  if (place_ != Place::Date) return putLines(text);
  const auto date = readableDate(text, omittedYear_);
  if (date && separated_) put(" ");
  put(date ? *date : text);
  separated_ = false;
}

void CardText::putLines(std::string_view utf8) {
  while (!utf8.empty()) {
    const size_t end = std::min(utf8.find('\n'), utf8.size());
    put(utf8.substr(0, end));
    if (end == utf8.size()) return;
    breaks_ += isOpen_;
    utf8.remove_prefix(end + 1);
  }
}

// Writes text at its place. A line begins with the first character that isn't a blank.
void CardText::put(std::string_view utf8) {
  if (!isOpen_ || breaks_ > 0) {
    const size_t first = utf8.find_first_not_of(' ');
    if (first == utf8.npos) return;
    if (!isOpen_) utf8.remove_prefix(first);
    if (inSummary_) {
      moveToSummary();
    } else {
      moveToValue();
    }
  }
  lines_.write(utf8);
}

}  // namespace px

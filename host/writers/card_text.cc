#include "host/writers/card_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/labels/label_texts.h"
#include "host/labels/property_labels.h"
#include "host/languages/translation.h"
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

void addTo(std::string *list, std::string_view entry) {
  if (entry.empty()) return;
  if (!list->empty()) *list += ", ";
  *list += entry;
}

const PropertyHead kNoHead;

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

}  // namespace

CardText::CardText(const TextLook &look, ContentTypeOf contentTypeOf, TextSink sink)
    : look_(look),
      contentTypeOf_(std::move(contentTypeOf)),
      lines_(look.columns(), std::move(sink)),
      head_(&kNoHead) {}

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
    ownHead_ = PropertyHead();
    ownHead_.heading = std::move(row.label);
    head_ = &ownHead_;
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
    for (const std::string &type : types) addTo(&list, typeInWords(type));
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
  head_ = &heads_.of(property, headOf);
  place_ = head_->isDate ? Place::Date : head_->isLast && !isAlarm_ ? Place::Last : Place::Text;
}

void CardText::beginField(uint32_t label) {
  if (place_ == Place::Nowhere || inSummary_) return;
  putHeld();
  if (place_ != Place::Last)
    place_ = head_->isDate || label == kRunTimeId ? Place::Date : Place::Text;
  fieldLabel_ = tr(labelText(label));
  isOpen_ = false;
  breaks_ = 0;
}

void CardText::object(const PlacedObject &object) {
  if (place_ == Place::Nowhere || inSummary_) return;
  putHeld();
  place_ = Place::Text;
  if (!head_->isKey) {
    changeHead()->additions.clear();
    ownHead_.setHeading();
  }
  const ObjectContent content = examineContent(object, contentTypeOf_);
  put("[");
  put(object.title.empty() ? head_->label : object.title);
  put(": ");
  put(contentKind(content.type));
  put(", ");
  put(sizeInWords(content.size));
  put("]");
}

void CardText::lateParameter(const Parameter &parameter) {
  if (place_ == Place::Nowhere) return;
  addParameter(parameter, changeHead());
  ownHead_.setHeading();
}

PropertyHead *CardText::changeHead() {
  if (head_ != &ownHead_) ownHead_ = *head_;
  head_ = &ownHead_;
  return &ownHead_;
}

void CardText::endProperty() {
  if (place_ == Place::Nowhere) return;
  if (place_ == Place::Last && !held_.empty() && last_.size() < kMostLast) {
    last_.push_back({head_->heading, std::exchange(held_, {})});
  }
  putHeld();
  if (isOpen_ && !head_->timeZone.empty()) put(" " + head_->timeZone);
  if (labelWritten_) {
    for (const Row &row : head_->rows) {
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
  head_ = &kNoHead;
}

void CardText::moveToValue() {
  if (!labelWritten_) {
    beginListing();
    if (isAlarm_) {
      writeSubLabel(head_->heading);
    } else {
      lines_.setIndent(kLabelIndent);
      writeStyled(head_->heading, kDim);
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
    writeStyled(tr("Alarm"), kDim);
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

void CardText::holdDates(std::string_view utf8) {
  while (!utf8.empty()) {
    const size_t end = dateEnd(utf8);
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
  const auto date = readableDate(text, head_->omittedYear);
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

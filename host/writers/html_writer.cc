#include "host/writers/html_writer.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/labels/label_texts.h"
#include "host/labels/property_labels.h"
#include "host/languages/translation.h"
#include "host/source/ascii_case.h"
#include "host/writers/data_address.h"
#include "host/writers/dates.h"
#include "host/writers/html_elements.h"
#include "host/writers/html_page.h"
#include "host/writers/links.h"
#include "px/vcrd.h"

namespace px {
namespace {

constexpr size_t kLongestHeld = 2048;  // bytes of a value that is looked at as a whole
constexpr size_t kLongestName = 256;   // of a name that is told elsewhere too
constexpr size_t kLongestHead = 1024;  // of a line of an entry's head
constexpr size_t kLongestLast = 512;   // of a value that is held for the section's end
constexpr size_t kMostLast = 8;        // rows
constexpr size_t kMostOuter = 32;      // cards in each other
constexpr uint32_t kUntitledId = 79493;
constexpr uint32_t kRunTimeId = 79355;  // of an alarm's fields
constexpr uint32_t kSnoozeTimeId = 79356;

// A property by its name, and the class of its value.
struct Class {
  std::string_view name, text;
};
constexpr Class kClasses[] = {
    {"ANNIVERSARY", "dt-anniversary"},
    {"ATTENDEE", "p-attendee"},
    {"BDAY", "dt-bday"},
    {"CATEGORIES", "p-category"},
    {"DESCRIPTION", "p-description"},
    {"DURATION", "dt-duration"},
    {"IMPP", "u-impp"},
    {"KEY", "u-key"},
    {"NICKNAME", "p-nickname"},
    {"NOTE", "p-note"},
    {"ORGANIZER", "p-organizer"},
    {"REV", "dt-rev"},
    {"ROLE", "p-role"},
    {"SOUND", "u-sound"},
    {"UID", "u-uid"},
};

// In the order of their labels' string ids.
constexpr std::string_view kNameClasses[] = {"p-family-name", "p-given-name", "p-additional-name",
                                             "p-honorific-prefix", "p-honorific-suffix"};
constexpr uint32_t kFirstNameId = 79412;

std::string_view classOf(std::string_view name) {
  const Class *found = std::find_if(std::begin(kClasses), std::end(kClasses),
                                    [name](const Class &each) { return each.name == name; });
  return found != std::end(kClasses) ? found->text : std::string_view();
}

// How long before or behind the time of an entry its alarm is.
std::string distanceInWords(std::string_view value, std::string_view duration) {
  if (duration.empty()) return std::string(tr("at the time"));
  return filled(value.starts_with('-') ? tr("%1 before") : tr("%1 after"), {duration});
}

std::string joined(const std::vector<std::string> &values) {
  std::string list;
  for (const std::string &value : values) list.append(list.empty() ? "" : ", ").append(value);
  return list;
}

// Adds as much as it takes to see that the text is longer than `size`.
void addTo(std::string *text, std::string_view utf8, size_t size) {
  if (text->size() <= size) *text += utf8.substr(0, size + 1);
}

// Cuts a text to whole characters.
void cut(std::string *utf8, size_t size) {
  if (utf8->size() <= size) return;
  while (size > 0 && ((*utf8)[size] & 0xC0) == 0x80) --size;
  utf8->resize(size);
  *utf8 += "\u2026";
}

bool isPerson(std::string_view name) { return name == "ATTENDEE" || name == "ORGANIZER"; }

}  // namespace

HtmlWriter::HtmlWriter(ContentTypeOf contentTypeOf, TextSink sink)
    : contentTypeOf_(std::move(contentTypeOf)),
      sink_(std::move(sink)),
      html_([this](std::string_view html) {
        if (entryOpen_) {
          entries_.append(html);
        } else {
          sink_(html);
        }
      }) {}

// The page and its files.

void HtmlWriter::begin(std::string_view title, bool severalFiles) {
  several_ = severalFiles;
  level_ = several_ ? 3 : 2;
  putPageBegin(title, &html_);
}

void HtmlWriter::end() {
  closeFile();
  putPageEnd(&html_);
  html_.giveOut();
}

void HtmlWriter::beginFile(std::string_view name) {
  closeFile();
  file_ = name;
}

// A file's part begins with the first thing that it shows.
void HtmlWriter::openFile() {
  if (std::exchange(fileOpen_, true)) return;
  ++files_;
  if (!several_) return html_.put("<div class=\"file\">\n");
  const std::string id = "f" + std::to_string(files_);
  html_.put("<section class=\"file\" aria-labelledby=\"" + id + "\">\n<h2 id=\"" + id + "\"><bdi>");
  html_.putText(file_);
  html_.put("</bdi></h2>\n");
}

void HtmlWriter::closeFile() {
  closeSection();
  giveEntries();
  outer_.clear();
  if (std::exchange(fileOpen_, false)) html_.put(several_ ? "</section>\n" : "</div>\n");
}

void HtmlWriter::error(std::string_view file, std::string_view message) {
  closeFile();
  html_.put("<p class=\"fault\"><b><bdi>");
  html_.putText(file);
  html_.put("</bdi></b> <bdi>");
  html_.putText(message);
  html_.put("</bdi></p>\n");
}

void HtmlWriter::heading(uint32_t level, std::string_view attributes) {
  const std::string name = "h" + std::to_string(level);
  html_.put("<" + name + " ");
  html_.put(attributes);
  html_.put(">");
  closing_ = "</" + name + ">\n";
}

// Sections.

HtmlWriter::Kind HtmlWriter::kindOf(const Section &section) {
  if (isTimeZoneRule(section.component)) return Kind::Hidden;
  if (section.format == VcardFormatVcard || section.component == "VCARD") return Kind::Card;
  if (section.component == "VCALENDAR") return Kind::Calendar;
  return section.component == "VALARM" ? Kind::Alarm : Kind::Entry;
}

void HtmlWriter::beginSection(const Section &section) {
  closeSection();
  kind_ = kindOf(section);
  if (kind_ == Kind::Alarm && !entryOpen_) kind_ = Kind::Entry;
  if (kind_ != Kind::Alarm) closeEntry();
  if (kind_ == Kind::Hidden) return;
  if (kind_ == Kind::Card || kind_ == Kind::Calendar) giveEntries();
  openFile();
  headed_ = hasPhoto_ = hasLogo_ = false;
  firstRows_ = true;
  switch (kind_) {
    case Kind::Card:
      beginCard(section);
      break;
    case Kind::Calendar:
      html_.put("<div class=\"calendar\">\n");
      break;
    case Kind::Entry:
      if (entries_.size() == EntriesByDay::Most) giveEntries();
      html_.giveOut();
      entryOpen_ = true;
      entry_ = EntryHead();
      entry_.component = section.component;
      break;
    case Kind::Alarm:
      html_.put("<section class=\"alarm\">\n");
      heading(level_ + 2, "class=\"alarm-name\"");
      html_.putText(tr("Alarm"));
      html_.put(closing_);
      break;
    case Kind::None:
    case Kind::Hidden:
      break;
  }
}

void HtmlWriter::endSection() { closeSection(); }

// Closes all that is open, also where a file has ended short. An entry stays open for its alarms.
void HtmlWriter::closeSection() {
  if (kind_ == Kind::None) return;
  if (place_ != Place::Value) endSummaryLine({});
  endProperty();
  if (kind_ == Kind::Card) closeHead();
  for (const Row &row : std::exchange(last_, {})) {
    head_ = PropertyHead();
    head_.label = row.label;
    class_ = {};
    openRow(" dir=\"auto\"");
    putText(row.value);
    endProperty();
  }
  closeRows();
  if (kind_ == Kind::Card) html_.put("</article>\n");
  if (kind_ == Kind::Calendar) {
    if (!headed_) nameCalendar(tr("Calendar"));
    html_.put("</div>\n");
  }
  if (kind_ == Kind::Alarm) html_.put("</section>\n");
  kind_ = Kind::None;
}

// Cards.

void HtmlWriter::beginCard(const Section &section) {
  while (!outer_.empty() && (section.partOf == 0 || outer_.back().number != section.partOf)) {
    outer_.pop_back();
  }
  const bool isNested = !outer_.empty();
  const std::string id = std::to_string(++ids_);
  html_.put("<article class=\"card h-card" + std::string(isNested ? " nested" : "") + "\" id=\"c" +
            id + "\">\n<header class=\"head\">\n");
  if (isNested) {
    const Outer &outer = outer_.back();
    const std::string link = "<a href=\"#c" + std::to_string(outer.id) + "\"><bdi>" +
                             asHtml(outer.name.empty() ? tr(labelText(kUntitledId)) : outer.name) +
                             "</bdi></a>";
    html_.put("<p class=\"part\">" + filled(asHtml(tr("Agent of %1")), {link}) + "</p>\n");
  }
  if (outer_.size() == kMostOuter) outer_.erase(outer_.begin());
  outer_.push_back({section.number, ids_, ""});
  headOpen_ = true;
}

// Writes a heading that says that the card has none, where another line comes first.
void HtmlWriter::openHeading() {
  if (std::exchange(headed_, true)) return;
  heading(level_, "class=\"name none\"");
  html_.putText(tr(labelText(kUntitledId)));
  html_.put(std::exchange(closing_, {}));
}

void HtmlWriter::openContact(std::string_view list) {
  if (!std::exchange(contactOpen_, true)) html_.put("<div class=\"contact\">\n");
  const std::string_view closing = list.starts_with("<ul") ? "</ul>\n" : "</div>\n";
  if (contact_ == closing) return;
  html_.put(contact_);
  html_.put(list);
  contact_ = closing;
}

void HtmlWriter::closeHead() {
  if (!std::exchange(headOpen_, false)) return;
  openHeading();
  html_.put(std::exchange(contact_, {}));
  if (std::exchange(contactOpen_, false)) html_.put("</div>\n");
  html_.put("</header>\n");
}

void HtmlWriter::beginSummaryLine(SummaryKind kind, bool) {
  if (place_ != Place::Nowhere) return;
  lineKind_ = kind;
  if (kind_ == Kind::Entry) {
    place_ = Place::EntryLine;
    held_.clear();
  } else if (kind_ == Kind::Card && headOpen_) {
    const Form form = kind == SummaryKind::Telephone ? Form::Telephone
                      : kind == SummaryKind::Email   ? Form::Mail
                                                     : Form::Text;
    beginValue(Place::CardLine, form);
  }
}

void HtmlWriter::openLine() {
  switch (lineKind_) {
    case SummaryKind::Name:
      if (std::exchange(headed_, true)) {
        html_.put("<p dir=\"auto\">");
        closing_ = "</p>\n";
      } else {
        heading(level_, "class=\"name p-name\" dir=\"auto\"");
      }
      return;
    case SummaryKind::Title:
      openHeading();
      html_.put("<p class=\"job p-job-title\" dir=\"auto\">");
      closing_ = "</p>\n";
      return;
    case SummaryKind::Organisation:
      openHeading();
      html_.put("<p class=\"org p-org\" dir=\"auto\">");
      closing_ = "</p>\n";
      return;
    case SummaryKind::Address:
      openHeading();
      openContact("<div>\n");
      html_.put("<p class=\"p-adr\" dir=\"auto\">");
      closing_ = "</p>\n";
      return;
    default:
      openHeading();
      openContact("<ul>\n");
      html_.put("<li>");
      closing_ = "</li>\n";
      return;
  }
}

void HtmlWriter::endSummaryLine(const std::vector<std::string> &types) {
  if (place_ == Place::EntryLine) {
    place_ = Place::Nowhere;
    cut(&held_, kLongestHead);
    std::string *line = lineKind_ == SummaryKind::Location ? &entry_.location
                        : lineKind_ == SummaryKind::Status ? &entry_.status
                                                           : &entry_.summary;
    if (lineKind_ != SummaryKind::Start && line->empty()) *line = held_;
    return;
  }
  if (place_ != Place::CardLine) return;
  if (lineKind_ == SummaryKind::Name) cut(&outer_.back().name, kLongestName);
  if (!streams_) putHeld();
  if (isOpen_ && !types.empty()) {
    std::vector<std::string> labels;
    labels.reserve(types.size());
    for (const std::string &type : types) labels.emplace_back(typeInWords(type));
    html_.put(" <small>" + asHtml(joined(labels)) + "</small>");
  }
  closeValue();
}

// Calendars.

// The style sheet places the name above the rows.
void HtmlWriter::nameCalendar(std::string_view name) {
  closeRows();
  heading(level_, "class=\"name\" dir=\"auto\"");
  html_.putText(name);
  html_.put(std::exchange(closing_, {}));
  headed_ = true;
}

void HtmlWriter::closeEntry() {
  if (!entryOpen_) return;
  if (entry_.component.empty() && entry_.isEmpty() && firstRows_) {
    entryOpen_ = false;  // of a calendar without entries the calls tell one
    return;
  }
  html_.put(EndEntry);
  html_.giveOut();
  entryOpen_ = false;
  entries_.endEntry(entry_.moment(), beginEntry(entry_, level_ + 1));
}

// Writes the entries that wait, each day under its heading.
void HtmlWriter::giveEntries() {
  closeEntry();
  if (entries_.size() == 0) return;
  bool dayOpen = false;
  entries_.takeAll(
      [&](Moment moment) {
        if (std::exchange(dayOpen, true)) html_.put("</section>\n");
        const std::string day = dayOf(moment);
        html_.put("<section class=\"day\">\n");
        heading(level_, "class=\"date\"");
        html_.put(day.empty() ? asHtml(tr("Without a date"))
                              : timeElement(dayInWords(day), day, ""));
        html_.put(std::exchange(closing_, {}));
      },
      [&](std::string_view html) { html_.put(html); });
  html_.put("</section>\n");
}

// Whether the property is told whole by the head of the entry, which is written from it.
bool HtmlWriter::takeIntoHead() {
  if (streams_ || inField_ || !head_.rows.empty() || !head_.parenthesis().empty()) return false;
  EntryTime *time = head_.name == "DTSTART" ? &entry_.start
                    : head_.name == "DTEND" ? &entry_.end
                    : head_.name == "DUE"   ? &entry_.due
                                            : nullptr;
  if (time) return time->text.empty() && time->set(held_, head_.timeZone);
  const std::string *line = head_.name == "SUMMARY"    ? &entry_.summary
                            : head_.name == "LOCATION" ? &entry_.location
                            : head_.name == "STATUS"   ? &entry_.status
                                                       : nullptr;
  return line && held_ == *line;
}

// Properties. A row is written with the value's first character, so a property without a value
// leaves nothing.

void HtmlWriter::beginProperty(const Property &property) {
  if (place_ != Place::Nowhere) endSummaryLine({});
  endProperty();
  if (kind_ == Kind::None || kind_ == Kind::Hidden || property.labelsGroup) return;
  if (kind_ == Kind::Card) closeHead();
  inProperty_ = true;
  head_ = headOf(property);
  class_ = classOf(head_.name);
  if (head_.name == "URL" && kind_ == Kind::Entry) class_ = "u-url";
  if (isPerson(head_.name)) {
    head_.rows.clear();
    for (const Parameter &parameter : property.parameters) lateParameter(parameter);
  }
  const bool isDuration = head_.name == "TRIGGER" || head_.name == "DURATION";
  const Form form = isPerson(head_.name)    ? Form::Person
                    : head_.isDate          ? Form::Date
                    : isDuration            ? Form::Duration
                    : head_.name == "TEL"   ? Form::Telephone
                    : head_.name == "EMAIL" ? Form::Mail
                                            : Form::Text;
  beginValue(Place::Value, form);
}

void HtmlWriter::lateParameter(const Parameter &parameter) {
  if (!inProperty_) return;
  const std::string value = joined(parameter.values);
  const std::string_view name = parameter.name;
  if (!isPerson(head_.name)) return addParameter(parameter, &head_);
  if (name == "CN") {
    called_ = value;
  } else if (name == "PARTSTAT" || name == "STATUS") {
    answer_ = value;
  } else if (name == "ROLE") {
    role_ = value;
  } else if (name == "RSVP") {
    replyWanted_ = inSmallLetters(value) == "true" || inSmallLetters(value) == "yes";
  } else if (name != "CUTYPE" || value != "INDIVIDUAL") {  // which everybody is, unless told
    addParameter(parameter, &head_);
  }
}

void HtmlWriter::beginField(uint32_t label) {
  if (!inProperty_) return;
  endValue();
  field_ = label;
  inField_ = true;
  beginValue(Place::Value, head_.isDate || label == kRunTimeId ? Form::Date
                           : label == kSnoozeTimeId            ? Form::Duration
                                                               : Form::Text);
}

void HtmlWriter::endProperty() {
  const bool wasProperty = std::exchange(inProperty_, false);
  if (wasProperty && place_ == Place::Value) {
    if (kind_ == Kind::Entry && takeIntoHead()) {
      place_ = Place::Nowhere;
    } else if (kind_ == Kind::Calendar && !headed_ && !streams_ && !held_.empty() &&
               (head_.name == "X-WR-CALNAME" || head_.name == "NAME")) {
      place_ = Place::Nowhere;
      nameCalendar(held_);
    } else if (head_.isLast && kind_ != Kind::Alarm && !streams_ && !inField_ &&
               held_.size() <= kLongestLast && last_.size() < kMostLast) {
      place_ = Place::Nowhere;
      head_.setHeading();
      if (!held_.empty()) last_.push_back({head_.heading, held_});
    }
  }
  if (form_ == Form::Person && streams_) {  // too long to stand beside what is told of it
    head_.rows.push_back({std::string(tr(parameterLabel("CN"))), called_});
    head_.rows.push_back({std::string(tr(parameterLabel("PARTSTAT"))), answer_});
    head_.rows.push_back({std::string(tr(parameterLabel("ROLE"))), role_});
  }
  endValue();
  if (rowOpen_) {
    for (const Row &row : head_.rows) putRow(row);
    closeList();
    html_.put("</dd>\n");
  }
  rowOpen_ = inField_ = false;
  answer_.clear();
  role_.clear();
  called_.clear();
  replyWanted_ = false;
}

void HtmlWriter::openRows() {
  if (std::exchange(rowsOpen_, true)) return;
  html_.put(std::exchange(firstRows_, false) ? "<dl class=\"rows first\">\n"
                                             : "<dl class=\"rows\">\n");
}

void HtmlWriter::closeRows() {
  if (std::exchange(rowsOpen_, false)) html_.put("</dl>\n");
}

// `direction` is an attribute, for a row whose value is one text.
void HtmlWriter::openRow(std::string_view direction) {
  if (std::exchange(rowOpen_, true)) return;
  openRows();
  html_.put("<dt><bdi>");
  html_.putText(head_.label.empty() ? "\u2013" : head_.label);
  html_.put("</bdi>");
  const std::string parenthesis = head_.parenthesis();
  if (!parenthesis.empty()) {
    html_.put(" <small><bdi>");
    html_.putText(parenthesis);
    html_.put("</bdi></small>");
  }
  html_.put("</dt><dd");
  const bool isText = !direction.empty() && !class_.starts_with("dt-");
  if (!class_.empty() && isText) html_.put(" class=\"" + std::string(class_) + "\"");
  html_.put(direction);
  html_.put(">");
}

void HtmlWriter::openList(List list) {
  if (list_ == list) return;
  closeList();
  list_ = list;
  if (list == List::Fields) html_.put("<dl class=\"fields\">\n");
  if (list == List::Tags) {
    html_.put(head_.name == "CATEGORIES" ? "<ul class=\"tags\">\n" : "<ul>\n");
  }
}

void HtmlWriter::closeList() {
  if (list_ == List::Fields) html_.put("</dl>");
  if (list_ == List::Tags) html_.put("</ul>");
  list_ = List::None;
}

void HtmlWriter::putRow(const Row &row) {
  if (row.value.empty()) return;
  openList(List::Fields);
  html_.put("<dt>" + asHtml(row.label) + "</dt><dd dir=\"auto\">");
  putText(row.value);
  html_.put("</dd>\n");
}

// Values.

void HtmlWriter::beginValue(Place place, Form form) {
  place_ = place;
  form_ = form;
  held_.clear();
  streams_ = isOpen_ = false;
  breaks_ = 0;
}

void HtmlWriter::endValue() {
  if (place_ != Place::Value) return;
  if (!streams_) putHeld();
  closeValue();
}

void HtmlWriter::closeValue() {
  if (isOpen_) html_.put(closing_);
  closing_.clear();
  isOpen_ = streams_ = false;
  breaks_ = 0;
  place_ = Place::Nowhere;
}

void HtmlWriter::openValue() {
  if (std::exchange(isOpen_, true)) return;
  closing_.clear();
  if (place_ == Place::CardLine) return openLine();
  if (!inField_) return openRow(" dir=\"auto\"");
  openRow("");
  if (field_ == 0) {
    openList(List::Tags);
    html_.put("<li dir=\"auto\"");
    if (!class_.empty()) html_.put(" class=\"" + std::string(class_) + "\"");
    html_.put(">");
    closing_ = "</li>\n";
    return;
  }
  openList(List::Fields);
  html_.put("<dt>");
  html_.putText(tr(labelText(field_)));
  html_.put("</dt><dd dir=\"auto\"");
  if (field_ - kFirstNameId < std::size(kNameClasses)) {
    html_.put(" class=\"");
    html_.put(kNameClasses[field_ - kFirstNameId]);
    html_.put("\"");
  }
  html_.put(">");
  closing_ = "</dd>\n";
}

void HtmlWriter::text(std::string_view utf8) {
  if (place_ == Place::Nowhere) return;
  if (place_ == Place::EntryLine) return addTo(&held_, utf8, kLongestHead);
  if (place_ == Place::CardLine && lineKind_ == SummaryKind::Name) {
    addTo(&outer_.back().name, utf8, kLongestName);
  }
  if (!streams_ && held_.size() + utf8.size() > kLongestHeld) {
    putLines(std::exchange(held_, {}));
    streams_ = true;
  }
  if (streams_) {
    putLines(utf8);
  } else {
    held_ += utf8;
  }
}

void HtmlWriter::lineBreak() {
  if (place_ == Place::CardLine && lineKind_ == SummaryKind::Name) {
    addTo(&outer_.back().name, " ", kLongestName);
  }
  if (streams_) {
    breaks_ += isOpen_;
  } else if (place_ != Place::Nowhere && !held_.empty()) {
    held_ += place_ == Place::EntryLine ? ' ' : '\n';
  }
}

// Writes a part of a value, with LF between its lines. It begins with the first character that
// isn't a blank.
void HtmlWriter::putLines(std::string_view utf8) {
  while (!utf8.empty()) {
    const size_t end = std::min(utf8.find('\n'), utf8.size());
    std::string_view line = utf8.substr(0, end);
    if (!isOpen_) line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) {
      openValue();
      for (; breaks_ > 0; --breaks_) html_.put("<br>");
      html_.putText(line);
    }
    if (end == utf8.size()) return;
    breaks_ += isOpen_;
    utf8.remove_prefix(end + 1);
  }
}

// Writes a whole text, with LF between its lines.
void HtmlWriter::putText(std::string_view utf8) {
  for (;;) {
    const size_t end = std::min(utf8.find('\n'), utf8.size());
    html_.putText(utf8.substr(0, end));
    if (end == utf8.size()) return;
    html_.put("<br>");
    utf8.remove_prefix(end + 1);
  }
}

// Writes what is held as what it is, without the blanks and empty lines at its head and the empty
// lines at its end.
void HtmlWriter::putHeld() {
  const std::string held = std::exchange(held_, {});
  std::string_view value = held;
  value.remove_prefix(std::min(value.find_first_not_of(" \n"), value.size()));
  value = value.substr(0, value.find_last_not_of('\n') + 1);
  if (value.empty() && called_.empty()) return;
  switch (form_) {
    case Form::Text:
      return putLink(addressOf(value), value);
    case Form::Date:
      return putDates(value);
    case Form::Telephone:
      return putLink(telephoneAddressOf(value), value);
    case Form::Mail:
      return putLink(mailAddressOf(value), value);
    case Form::Duration:
      return putDuration(value);
    case Form::Person:
      return putPerson(value);
  }
}

// The class of a date or a length of time, which its own element has.
std::string_view HtmlWriter::timeClass() const {
  return class_.starts_with("dt-") ? class_ : std::string_view();
}

void HtmlWriter::putDuration(std::string_view utf8) {
  const auto duration = readableDuration(utf8);
  const bool isDistance = head_.name == "TRIGGER";
  if (!duration || (duration->empty() && !isDistance)) return putDates(utf8);
  openValue();
  html_.put(timeElement(isDistance ? distanceInWords(utf8, *duration) : *duration,
                        utf8.starts_with('P') ? utf8 : "", timeClass()));
}

void HtmlWriter::putLink(const std::string &address, std::string_view utf8) {
  std::string_view name;
  if (place_ == Place::CardLine) {
    if (lineKind_ == SummaryKind::Telephone) name = "p-tel";
    if (lineKind_ == SummaryKind::Email) name = "u-email";
    if (lineKind_ == SummaryKind::Url) name = "u-url";
  }
  openValue();
  const std::string_view element = !address.empty() ? "a" : !name.empty() ? "span" : "";
  if (!element.empty()) {
    html_.put("<");
    html_.put(element);
    if (!name.empty()) html_.put(" class=\"" + std::string(name) + "\"");
    if (!address.empty()) html_.put(" href=\"" + asHtml(address) + "\"");
    html_.put(name.empty() ? ">" : " dir=\"auto\">");
  }
  putText(utf8);
  if (!element.empty()) html_.put("</" + std::string(element) + ">");
}

void HtmlWriter::putDates(std::string_view utf8) {
  bool any = false;
  openValue();
  for (;;) {
    const size_t end = dateEnd(utf8);
    const std::string_view part = utf8.substr(0, end);
    if (const auto date = readableDate(part, head_.omittedYear)) {
      html_.put(timeElement(*date, machineDate(*date), timeClass()));
      any = true;
    } else {
      putText(part);
    }
    if (end == utf8.size()) break;
    html_.put(utf8[end] == '/' ? " \u2013 " : ", ");
    utf8.remove_prefix(end + 1);
  }
  if (any) html_.put(zoneElement(head_.timeZone));
}

// Somebody who takes part, with the answer.
void HtmlWriter::putPerson(std::string_view utf8) {
  openValue();
  const std::string address = mailAddressOf(utf8);
  std::string_view name = called_.empty() ? utf8 : called_;
  if (called_.empty() && inSmallLetters(name.substr(0, 7)) == "mailto:") name.remove_prefix(7);
  html_.put("<span class=\"person h-card\">");
  if (address.empty()) {
    html_.put("<span class=\"p-name\" dir=\"auto\">");
  } else {
    html_.put("<a class=\"p-name u-email\" dir=\"auto\" href=\"" + asHtml(address) + "\">");
  }
  putText(name);
  html_.put(address.empty() ? "</span>" : "</a>");
  if (!answer_.empty()) html_.put(" " + stateElement(answer_));
  std::string more = roleInWords(role_);
  if (replyWanted_) {
    if (!more.empty()) more += ", ";
    more += tr("reply requested");
  }
  if (!more.empty()) html_.put(" <small>" + asHtml(more) + "</small>");
  html_.put("</span>");
}

// Objects. Whatever fails while the content is read, the element that holds it is closed.

void HtmlWriter::object(const PlacedObject &object) {
  if (!inProperty_ || place_ != Place::Value) return;
  endValue();
  if (!head_.isKey) head_.additions.clear();
  ContentReader content(object, contentTypeOf_);
  const std::string type = content.type();
  const bool isAttachment = head_.name == "ATTACH";
  const bool isSeen = !content.isDeclared() && !isAttachment;
  const std::string &title = object.title.empty() ? head_.label : object.title;
  const std::string named = class_.empty() ? "" : " class=\"" + std::string(class_) + "\"";
  uint64_t size = 0;
  if (isSeen && isShownPicture(type)) {
    size = putPicture(&content);
  } else if (isSeen && isPlayedSound(type)) {
    openRow("");
    size = putData(&content,
                   "<audio" + named + " controls preload=\"metadata\" aria-label=\"" +
                       asHtml(title) + "\" src=\"",
                   "\"></audio>");
  } else {
    openRow("");
    size = putData(&content, "<a" + named + " download=\"" + asHtml(title) + "\" href=\"",
                   "\"><bdi>" + asHtml(title) + "</bdi></a> ");
  }
  html_.put("<span class=\"quiet\">");
  html_.putText(contentKind(type));
  html_.put(", <bdi>" + asHtml(sizeInWords(size)) + "</bdi></span>");
}

// Puts the content as data between two pieces of markup and answers its size in bytes.
uint64_t HtmlWriter::putData(ContentReader *content, std::string_view before,
                             std::string_view behind) {
  html_.put(before);
  try {
    const uint64_t size = putDataAddress(content, &html_);
    html_.put(behind);
    return size;
  } catch (...) {
    html_.put(behind);
    throw;
  }
}

// The first photo and the first logo of a card stand at its head, others in their rows.
uint64_t HtmlWriter::putPicture(ContentReader *content) {
  const bool isLogo = head_.name == "LOGO";
  const bool isPhoto = head_.name == "PHOTO" || head_.name == "MS-CARDPICTURE";
  bool *isTaken = isLogo ? &hasLogo_ : &hasPhoto_;
  const bool isOfHead = kind_ == Kind::Card && !*isTaken && (isLogo || isPhoto);
  std::string text = asHtml(head_.label);
  if (kind_ == Kind::Card && !outer_.back().name.empty()) {
    text += ": " + asHtml(outer_.back().name);
  }
  std::string before("<figure class=\"picture\">");
  if (isOfHead) {
    *isTaken = true;
    closeRows();
    before = isLogo ? "<figure class=\"logo\">" : "<figure class=\"photo\">";
  } else {
    openRow("");
  }
  before += "<img";
  if (isLogo || isPhoto) before += isLogo ? " class=\"u-logo\"" : " class=\"u-photo\"";
  before += " alt=\"" + text + "\" src=\"";
  const uint64_t size = putData(content, before, "\"></figure>\n");
  openRow("");
  return size;
}

}  // namespace px

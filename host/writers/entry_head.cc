#include "host/writers/entry_head.h"

#include "host/labels/label_texts.h"
#include "host/languages/translation.h"
#include "host/writers/dates.h"
#include "host/writers/html_elements.h"
#include "host/writers/html_text.h"

namespace px {
namespace {

constexpr uint32_t kDueId = 79368;
constexpr uint32_t kUntitledId = 79493;

}  // namespace

bool EntryTime::set(std::string_view date, std::string_view zoneName) {
  const auto readable = readableDate(date);
  if (!readable || momentOf(*readable) == NoMoment) return false;
  text = *readable;
  zone = zoneName;
  // What stands behind the time is the zone.
  const size_t day = text.find(' ');
  const size_t at = day == text.npos ? day : text.find(' ', day + 1);
  if (at != text.npos) {
    zone = text.substr(at + 1);
    text.resize(at);
  }
  return true;
}

bool EntryHead::isEmpty() const {
  return summary.empty() && location.empty() && status.empty() && moment() == NoMoment;
}

Moment EntryHead::moment() const {
  for (const EntryTime *time : {&start, &due, &end}) {
    if (!time->text.empty()) return momentOf(time->text);
  }
  return NoMoment;
}

std::string beginEntry(const EntryHead &head, uint32_t level) {
  std::string html("<article class=\"entry");
  if (head.component.empty() || head.component == "VEVENT") html += " h-event";
  html += "\"><div class=\"when\">";
  const auto element = [](const EntryTime &time, std::string_view without, std::string_view name) {
    const bool sameDay = !time.isDay() && time.text.substr(0, 10) == without;
    const bool isOffset = time.zone == "UTC" || time.zone.find_first_of("+-") == 0;
    const std::string whole = isOffset ? time.text + " " + time.zone : time.text;
    return timeElement(sameDay ? time.text.substr(11) : time.text, machineDate(whole), name);
  };
  const EntryTime &start = head.start;
  EntryTime end = head.end;
  // Days end with the one before.
  if (start.isDay() && end.isDay()) end.text = dayBefore(end.text);
  if (end.text == start.text && end.zone == start.zone) end = {};
  const std::string day = dayOf(head.moment());
  if (start.isDay()) {
    html += timeElement(tr("All day"), start.text, "dt-start");
  } else if (!start.text.empty()) {
    html += element(start, day, "dt-start");
    if (start.zone != end.zone) html += zoneElement(start.zone);
  }
  if (!end.text.empty()) {
    html += " \u2013 " + element(end, day, "dt-end") + zoneElement(end.zone);
  }
  if (!head.due.text.empty()) {
    const bool whole = head.due.isDay() && head.due.text == day;
    html += "<div>" + asHtml(tr(labelText(kDueId))) + " ";
    if (!whole) html += element(head.due, day, "dt-due") + zoneElement(head.due.zone);
    html += "</div>";
  }
  html += "</div><div class=\"what\">\n";
  const std::string name = "h" + std::to_string(level);
  html += "<" + name + " class=\"name" + (head.summary.empty() ? " none" : " p-name") +
          "\" dir=\"auto\">" +
          asHtml(head.summary.empty() ? tr(labelText(kUntitledId)) : head.summary) + "</" + name +
          ">\n";
  if (!head.location.empty()) {
    html += "<p class=\"place p-location\" dir=\"auto\">" + asHtml(head.location) + "</p>\n";
  }
  const bool isTask = head.component == "VTODO";
  const bool isJournal = head.component == "VJOURNAL";
  if (!head.status.empty() || isTask || isJournal) {
    html += "<p class=\"status\">";
    if (isTask) html += tagElement(tr("to do")) + " ";
    if (isJournal) html += tagElement(tr("journal")) + " ";
    if (!head.status.empty()) html += stateElement(head.status);
    html += "</p>\n";
  }
  return html;
}

}  // namespace px

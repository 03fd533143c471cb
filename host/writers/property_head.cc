#include "host/writers/property_head.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/labels/property_labels.h"
#include "host/languages/translation.h"
#include "host/source/ascii_case.h"
#include "host/source/utf8.h"

namespace px {
namespace {

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

// Of a property with a label: parameters that stand behind it, with how their value is shown.
constexpr std::pair<std::string_view, std::string_view> kAdditions[] = {
    {"FBTYPE", "%1"},          {"LANGUAGE", N_("language %1")},
    {"RANGE", N_("range %1")}, {"RELATED", N_("related to %1")},
    {"RELTYPE", "%1"},         {"X-SERVICE-TYPE", "%1"},
};

// The list stands in one line.
void addTo(std::string *list, std::string_view entry) {
  if (entry.empty()) return;
  if (!list->empty()) *list += ", ";
  *list += entry;
  std::replace(list->begin(), list->end(), '\n', ' ');
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

}  // namespace

PropertyHead headOf(const Property &property) {
  PropertyHead head;
  head.name = inCapitals(property.name);
  const uint32_t id = property.label;
  const std::string_view text = tr(propertyLabel(id, head.name));
  head.isLabelled = !text.empty();
  appendPrintable(head.isLabelled ? text : property.name, &head.label);
  appendPrintable(cleanLabel(property.groupLabel), &head.group);
  head.isDate = isOneOf(kDates, id, head.name);
  head.isMedia = isOneOf(kMedia, id, head.name);
  head.isKey = isOneOf(kKeys, id, head.name);
  head.isLast = isOneOf(kLast, id, head.name);
  if (head.isLabelled && !head.isMedia) {
    for (const std::string &type : property.types) addTo(&head.additions, typeInWords(type));
  }
  if (!head.isMedia) {
    for (const Parameter &parameter : property.parameters) addParameter(parameter, &head);
  }
  head.setHeading();
  return head;
}

void addParameter(const Parameter &parameter, PropertyHead *head) {
  const std::string_view name = parameter.name;
  const std::string values = joined(parameter.values);
  if (head->isDate && name == "TZID") {
    head->timeZone = values;
  } else if (head->isDate && name == "X-APPLE-OMIT-YEAR") {
    head->omittedYear = values;
  } else if (!head->isLabelled) {
    const bool isHidden =
        std::find(std::begin(kHidden), std::end(kHidden), name) != std::end(kHidden);
    if (!isHidden) addTo(&head->additions, std::string(name) + "=" + values);
  } else if (const std::string_view label = tr(parameterLabel(name)); !label.empty()) {
    head->rows.push_back({std::string(label), values});
  } else if (name == "PREF" && values == "1") {
    const std::string_view preferred = tr(typeLabel("pref"));
    if (head->additions.find(preferred) == std::string::npos) addTo(&head->additions, preferred);
  } else {
    for (const auto &[shown, text] : kAdditions) {
      if (shown == name) addTo(&head->additions, filled(tr(text), {values}));
    }
  }
}

std::string PropertyHead::parenthesis() const {
  std::string list(group);
  addTo(&list, additions);
  return list;
}

void PropertyHead::setHeading() {
  heading = label;
  const std::string list = parenthesis();
  if (!list.empty()) heading += (label.empty() ? "(" : " (") + list + ")";
}

bool isTimeZoneRule(std::string_view component) {
  return component == "VTIMEZONE" || component == "STANDARD" || component == "DAYLIGHT";
}

}  // namespace px

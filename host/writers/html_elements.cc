#include "host/writers/html_elements.h"

#include <algorithm>
#include <utility>

#include "host/languages/translation.h"
#include "host/source/ascii_case.h"
#include "host/writers/html_text.h"

namespace px {
namespace {

// States and what people answer, with the class that colours what is decided.
constexpr std::pair<std::string_view, std::string_view> kStates[] = {
    {N_("accepted"), " yes"}, {N_("confirmed"), " yes"}, {N_("completed"), " yes"},
    {N_("declined"), " no"},  {N_("cancelled"), " no"},  {N_("tentative"), " maybe"},
    {N_("needs action"), ""}, {N_("in process"), ""},    {N_("delegated"), ""},
    {N_("sent"), ""},         {N_("draft"), ""},         {N_("final"), ""},
};

constexpr std::pair<std::string_view, std::string_view> kRoles[] = {
    {"REQ-PARTICIPANT", N_("required")},
    {"OPT-PARTICIPANT", N_("optional")},
    {"NON-PARTICIPANT", N_("for information")},
    {"CHAIR", N_("chair")},
    {"ATTENDEE", N_("attendee")},
    {"ORGANIZER", N_("organizer")},
    {"OWNER", N_("owner")},
    {"DELEGATE", N_("delegate")},
};

// "NEEDS-ACTION" is "needs action" to a person.
std::string inWords(std::string_view value) {
  std::string words = inSmallLetters(value);
  std::replace(words.begin(), words.end(), '-', ' ');
  return words;
}

}  // namespace

std::string timeElement(std::string_view text, std::string_view machine, std::string_view name) {
  std::string element("<time");
  if (!name.empty()) element.append(" class=\"").append(name).append("\"");
  if (!machine.empty()) element.append(" datetime=\"").append(asHtml(machine)).append("\"");
  return element + ">" + asHtml(text) + "</time>";
}

std::string zoneElement(std::string_view zone) {
  return zone.empty() ? "" : " <span class=\"zone\">" + asHtml(zone) + "</span>";
}

std::string tagElement(std::string_view text) {
  return "<span class=\"tag\">" + asHtml(text) + "</span>";
}

std::string stateElement(std::string_view value) {
  const std::string words = inWords(value);
  for (const auto &[state, kind] : kStates) {
    if (state != words) continue;
    return "<span class=\"tag" + std::string(kind) + "\">" + asHtml(tr(state)) + "</span>";
  }
  return tagElement(words);
}

std::string roleInWords(std::string_view role) {
  for (const auto &[name, words] : kRoles) {
    if (name == role) return std::string(tr(words));
  }
  return inWords(role);
}

}  // namespace px

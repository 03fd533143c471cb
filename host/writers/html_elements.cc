#include "host/writers/html_elements.h"

#include <algorithm>
#include <utility>

#include "host/source/ascii_case.h"
#include "host/writers/html_text.h"

namespace px {
namespace {

// What people answer, by what it means. Other answers leave it open.
constexpr std::pair<std::string_view, std::string_view> kAnswers[] = {
    {"accepted", "yes"}, {"confirmed", "yes"}, {"completed", "yes"},
    {"declined", "no"},  {"cancelled", "no"},  {"tentative", "maybe"},
};

constexpr std::pair<std::string_view, std::string_view> kRoles[] = {
    {"REQ-PARTICIPANT", "required"},
    {"OPT-PARTICIPANT", "optional"},
    {"NON-PARTICIPANT", "for information"},
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

std::string tagElement(std::string_view value) {
  const std::string words = inWords(value);
  std::string kind("tag");
  for (const auto &[answer, meaning] : kAnswers) {
    if (answer == words) kind.append(" ").append(meaning);
  }
  return "<span class=\"" + kind + "\">" + asHtml(words) + "</span>";
}

std::string roleInWords(std::string_view role) {
  for (const auto &[name, words] : kRoles) {
    if (name == role) return std::string(words);
  }
  return inWords(role);
}

}  // namespace px

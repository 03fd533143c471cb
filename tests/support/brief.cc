#include "tests/support/brief.h"

#include <cstdio>
#include <map>

namespace px::test {

namespace {

const std::map<std::string, std::string, std::less<>> kWords = {
    {"SoUseStyle(0)", "[label]"},      {"SoUseStyle(1)", "[plain]"},
    {"SoUseStyle(2)", "[sub]"},        {"SoUseStyle(3)", "[h1]"},
    {"SoUseStyle(4)", "[h2]"},         {"SoUseStyle(5)", "[h3]"},
    {"SoUseStyle(6)", "[h4]"},         {"SoUseStyle(7)", "[list]"},
    {"SoUseStyle(8)", "[body]"},       {"SoEmitSpecial(1)", "tab"},
    {"SoEmitSpecial(5)", "br"},        {"SoEmitSpecial(6)", "sep"},
    {"SoEmitBreak(1, 0)", "para"},     {"SoEmitBreak(2, 0)", "end"},
    {"SoEmitBreak(3, 0)", "next"},     {"SoSetCharset(0x30100)", "d"},
    {"SoSetCharset(0x14B00000)", "u"}, {"SoSetCharset(0x14E30100)", "w"},
};

bool takePrefix(std::string_view *text, std::string_view prefix) {
  if (!text->starts_with(prefix)) return false;
  text->remove_prefix(prefix.size());
  return true;
}

// 'A' and 0x20AC of SoEmitChar.
std::string character(std::string_view argument) {
  if (argument.front() == '\'') return std::string(1, argument[1]);
  return "<" + std::string(argument.substr(2)) + ">";
}

std::string word(std::string_view line) {
  if (const auto known = kWords.find(line); known != kWords.end()) return known->second;
  if (takePrefix(&line, "SoEmitResourceString(")) {
    return "#" + std::string(line.substr(0, line.size() - 1));
  }
  takePrefix(&line, "So");
  std::string result;
  for (const char c : line) {
    if (c != ' ') result += c;
  }
  return result;
}

}  // namespace

std::string brief(const Trace &trace) {
  std::string result;
  bool inText = false;
  bool behindCharset = false;
  for (std::string_view line : trace) {
    if (takePrefix(&line, "SoEmitChar(")) {
      if (!inText) {
        if (!behindCharset && !result.empty()) result += ' ';
        result += '"';
      }
      result += character(line.substr(0, line.size() - 1));
      inText = true;
      behindCharset = false;
      continue;
    }
    if (inText) result += '"';
    inText = false;
    if (!result.empty()) result += ' ';
    result += word(line);
    behindCharset = line.starts_with("SoSetCharset");
  }
  if (inText) result += '"';
  return result;
}

std::vector<Section> sectionsOf(std::string_view brief) {
  std::vector<Section> sections;
  constexpr std::string_view begin = "BeginSection(0,0,0)";
  while (!brief.empty()) {
    const std::string_view whole = brief.substr(0, brief.find(begin, begin.size()));
    brief.remove_prefix(whole.size());
    const auto firstOf = [&whole](std::initializer_list<std::string_view> words, size_t from) {
      size_t first = whole.size();
      for (const std::string_view w : words) first = std::min(first, whole.find(w, from));
      return first;
    };
    const size_t summary = firstOf({" [h1]", " [h2]", " br"}, 0);
    const size_t listing = firstOf({" [list]", " [body]", " next", " end"}, summary);
    const auto part = [&whole](size_t from, size_t to) {
      std::string_view text = whole.substr(from, to - from);
      if (text.starts_with(' ')) text.remove_prefix(1);
      if (text.ends_with(' ')) text.remove_suffix(1);
      return std::string(text);
    };
    sections.push_back({part(0, summary), part(summary, listing), part(listing, whole.size())});
  }
  return sections;
}

}  // namespace px::test

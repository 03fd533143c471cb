#include "host/writers/html_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/source/utf8.h"

namespace px {
namespace {

// Bytes that are escaped, or that may begin a character that is.
constexpr std::array<bool, 256> kStops = [] {
  std::array<bool, 256> stops{};
  for (size_t byte = 0; byte < 0x20; ++byte) stops[byte] = byte != '\t' && byte != '\n';
  for (const size_t byte : {0x22, 0x26, 0x27, 0x3C, 0x3E, 0x7F, 0xC2, 0xE2, 0xEF}) {
    stops[byte] = true;
  }
  for (size_t byte = 0xF0; byte < 0xF5; ++byte) stops[byte] = true;
  return stops;
}();

std::string_view escapeOf(char byte) {
  switch (byte) {
    case '"':
      return "&quot;";
    case '&':
      return "&amp;";
    case '\'':
      return "&#39;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return {};
  }
}

// U+FDD0 to U+FDEF, and the last two of each plane.
bool isNoCharacter(std::string_view utf8) {
  const auto at = [utf8](size_t i) { return static_cast<uint8_t>(utf8[i]); };
  if (utf8.size() == 3 && at(0) == 0xEF && at(1) == 0xB7) return 0x90 <= at(2) && at(2) <= 0xAF;
  const size_t last = utf8.size() - 1;
  const bool ends = utf8.size() >= 3 && at(last - 1) == 0xBF && at(last) >= 0xBE;
  return ends && (utf8.size() == 3 ? at(0) == 0xEF : (at(1) & 0x0F) == 0x0F);
}

}  // namespace

void appendHtml(std::string_view utf8, std::string *to) {
  while (!utf8.empty()) {
    size_t plain = 0;
    while (plain < utf8.size() && !kStops[static_cast<uint8_t>(utf8[plain])]) ++plain;
    to->append(utf8, 0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    const std::string_view escape = escapeOf(utf8[0]);
    const size_t length =
        std::clamp<size_t>(utf8Length(static_cast<uint8_t>(utf8[0])), 1, utf8.size());
    const std::string_view character = utf8.substr(0, length);
    if (!escape.empty()) {
      *to += escape;
    } else if (isNoCharacter(character)) {
      *to += "\uFFFD";
    } else {
      appendPrintable(character, to);
    }
    utf8.remove_prefix(length);
  }
}

std::string asHtml(std::string_view utf8) {
  std::string html;
  appendHtml(utf8, &html);
  return html;
}

// In steps, so that what is held stays small however long the text is.
void HtmlStream::putText(std::string_view utf8) {
  while (!utf8.empty()) {
    size_t step = std::min(utf8.size(), MaxHeld);
    while (step < utf8.size() && (utf8[step] & 0xC0) == 0x80) ++step;
    appendHtml(utf8.substr(0, step), &held_);
    utf8.remove_prefix(step);
    if (held_.size() >= MaxHeld) giveOut();
  }
}

void HtmlStream::giveOut() {
  if (!held_.empty()) sink_(held_);
  held_.clear();
}

}  // namespace px

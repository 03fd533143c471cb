#include "host/writers/json_text.h"

#include <array>
#include <cstdint>

namespace px {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

// Bytes that are escaped, or that may begin a character that is.
constexpr std::array<bool, 256> kStops = [] {
  std::array<bool, 256> stops{};
  for (size_t byte = 0; byte < 0x20; ++byte) stops[byte] = true;
  for (const size_t byte : {0x22U, 0x5CU, 0x7FU, 0xC2U, 0xE2U}) stops[byte] = true;
  return stops;
}();

// Answers the character at the start of `text` if it is one to escape, and stores its length; 0 if
// it isn't one.
uint32_t characterToEscape(std::string_view text, size_t *length) {
  const auto at = [text](size_t i) {
    return i < text.size() ? static_cast<uint8_t>(text[i]) : uint32_t{0};
  };
  *length = 1;
  if (at(0) == 0xC2 && 0x80 <= at(1) && at(1) <= 0x9F) {  // control characters of the upper half
    *length = 2;
    return at(1);
  }
  if (at(0) == 0xE2 && (at(1) == 0x80 || at(1) == 0x81) && at(2) >= 0x80) {
    *length = 3;
    const uint32_t character = 0x2000 + (at(1) & 0x3F) * 64 + (at(2) & 0x3F);
    // Line separators, and what overrides the direction of writing.
    const bool escaped = (0x2028 <= character && character <= 0x202E) ||
                         (0x2066 <= character && character <= 0x2069);
    return escaped ? character : 0;
  }
  return at(0) >= 0x80 ? 0 : at(0);
}

void appendEscape(uint32_t character, std::string *to) {
  to->push_back('\\');
  switch (character) {
    case '"':
    case '\\':
      to->push_back(static_cast<char>(character));
      break;
    case '\n':
      to->push_back('n');
      break;
    case '\r':
      to->push_back('r');
      break;
    case '\t':
      to->push_back('t');
      break;
    default:
      to->push_back('u');
      for (int shift = 12; shift >= 0; shift -= 4) {
        to->push_back(kHexDigits[character >> shift & 0xF]);
      }
  }
}

}  // namespace

void JsonStream::putEscaped(std::string_view utf8) {
  while (!utf8.empty()) {
    size_t plain = 0;
    while (plain < utf8.size() && !kStops[static_cast<uint8_t>(utf8[plain])]) ++plain;
    held_.append(utf8, 0, plain);
    utf8.remove_prefix(plain);
    if (!utf8.empty()) {
      size_t length = 0;
      // U+0000 shares its answer with characters that stay: it alone is the byte 0.
      const uint32_t character = characterToEscape(utf8, &length);
      if (character != 0 || utf8[0] == '\0') {
        appendEscape(character, &held_);
      } else {
        held_.append(utf8, 0, length);
      }
      utf8.remove_prefix(length);
    }
    if (held_.size() >= MaxHeld) giveOut();
  }
}

void JsonStream::giveOut() {
  if (!held_.empty()) sink_(held_);
  held_.clear();
}

}  // namespace px

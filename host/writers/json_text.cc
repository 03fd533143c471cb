#include "host/writers/json_text.h"

#include <cstdint>

#include "host/source/byte_search.h"

namespace px {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

// Bytes that are escaped, or that may begin a character that is.
ByteVector isStop(ByteVector b) {
  return ByteVector(b < ' ') | isByte(b, '"') | isByte(b, '\\') | isByte(b, '\x7F') |
         isByte(b, '\xC2') | isByte(b, '\xE2');
}

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

void putEscape(uint32_t character, JsonStream *to) {
  to->Put('\\');
  switch (character) {
    case '"':
    case '\\':
      to->Put(static_cast<char>(character));
      break;
    case '\n':
      to->Put('n');
      break;
    case '\r':
      to->Put('r');
      break;
    case '\t':
      to->Put('t');
      break;
    default:
      to->Put('u');
      for (int shift = 12; shift >= 0; shift -= 4) to->Put(kHexDigits[character >> shift & 0xF]);
  }
}

}  // namespace

void JsonStream::putEscaped(std::string_view utf8) {
  while (!utf8.empty()) {
    const size_t plain = lengthBefore(utf8, isStop);
    put(utf8.substr(0, plain));
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    size_t length = 0;
    // U+0000 shares its answer with characters that stay: it alone is the byte 0.
    const uint32_t character = characterToEscape(utf8, &length);
    if (character != 0 || utf8[0] == '\0') {
      putEscape(character, this);
    } else {
      put(utf8.substr(0, length));
    }
    utf8.remove_prefix(length);
  }
}

void JsonStream::putLong(std::string_view bytes) {
  giveOut();
  if (bytes.size() >= held_.size()) return sink_(bytes);
  std::memcpy(held_.data(), bytes.data(), bytes.size());
  size_ = bytes.size();
}

void JsonStream::giveOut() {
  if (size_ > 0) sink_({held_.data(), std::exchange(size_, 0)});
}

void JsonText::quoted(std::string_view json) {
  writer_.beginString();
  stream_.put(json);
}

void JsonText::key(std::string_view name) {
  beginString();
  stream_.put(name);
  endString();
}

void JsonText::string(std::string_view utf8) {
  beginString();
  addToString(utf8);
  endString();
}

void JsonText::member(std::string_view name, std::string_view utf8) {
  key(name);
  string(utf8);
}

void JsonText::member(std::string_view name, uint64_t value) {
  key(name);
  number(value);
}

void JsonText::member(std::string_view name, const std::vector<std::string> &values) {
  key(name);
  startArray();
  for (const std::string &value : values) string(value);
  endArray();
}

}  // namespace px

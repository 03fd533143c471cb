#include "host/source/utf8.h"

#include "host/source/byte_search.h"

namespace px {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// NUL counts as none.
ByteVector isNoAscii(ByteVector b) {
  using Signed = int8_t __attribute__((vector_size(16)));
  return ByteVector(Signed(b) <= 0);
}

}  // namespace

size_t validUtf8Length(std::string_view bytes, bool *cut) {
  size_t at = 0;
  *cut = false;
  for (;;) {
    at += lengthBefore(bytes.substr(at), isNoAscii);
    if (at == bytes.size()) return at;
    const auto first = static_cast<uint8_t>(bytes[at]);
    const size_t length = first == 0 ? 0 : utf8Length(first);
    if (length == 0) return at;
    for (size_t i = 1; i < length; ++i) {
      if (at + i == bytes.size()) {
        *cut = true;
        return at;
      }
      const auto byte = static_cast<uint8_t>(bytes[at + i]);
      if (i == 1 ? !canBeSecondUtf8(first, byte) : (byte & 0xC0) != 0x80) return at;
    }
    at += length;
  }
}

bool isValidUtf8(std::string_view bytes) {
  bool cut;
  return validUtf8Length(bytes, &cut) == bytes.size();
}

size_t printableAsciiLength(std::string_view text) {
  return lengthBefore(text, [](ByteVector b) { return ByteVector(b - ' ' > '~' - ' '); });
}

char32_t firstCharacter(std::string_view utf8, size_t *length) {
  const auto first = static_cast<uint8_t>(utf8[0]);
  *length = utf8Length(first);
  if (*length == 1) return first;
  char32_t character = first & (0x7Fu >> *length);
  for (size_t i = 1; i < *length; ++i) {
    character = character << 6 | (static_cast<uint8_t>(utf8[i]) & 0x3F);
  }
  return character;
}

char *storeUtf8(char32_t character, char *to) {
  if (character > 0x10FFFF || (0xD800 <= character && character <= 0xDFFF)) {
    character = kReplacement;
  }
  const auto put = [&to](char32_t byte) { *to++ = static_cast<char>(byte); };
  const auto putRest = [&put, character](int shift) { put(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | character >> 6);
    putRest(0);
  } else if (character < 0x10000) {
    put(0xE0 | character >> 12);
    putRest(6);
    putRest(0);
  } else {
    put(0xF0 | character >> 18);
    putRest(12);
    putRest(6);
    putRest(0);
  }
  return to;
}

void appendUtf8(char32_t character, std::string *utf8) {
  char bytes[4];
  utf8->append(bytes, static_cast<size_t>(storeUtf8(character, bytes) - bytes));
}

void appendPrintable(std::string_view utf8, std::string *to) {
  while (!utf8.empty()) {
    size_t length;
    if (isPrintableAscii(utf8.front())) {
      length = printableAsciiLength(utf8);
      to->append(utf8, 0, length);
    } else if (drivesTerminal(firstCharacter(utf8, &length))) {
      appendUtf8(kReplacement, to);
    } else {
      to->append(utf8, 0, length);
    }
    utf8.remove_prefix(length);
  }
}

}  // namespace px

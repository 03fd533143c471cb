#include "host/character_sets.h"

#include <iconv.h>

#include <array>

namespace px {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// The characters of the bytes 0x80 to 0xFF.
using UpperHalf = std::array<char32_t, 128>;

UpperHalf readUpperHalf(const char *set) {
  UpperHalf characters;
  characters.fill(kReplacement);
  iconv_t converter = iconv_open("UTF-32LE", set);
  if (converter == reinterpret_cast<iconv_t>(-1)) return characters;
  for (size_t i = 0; i < characters.size(); ++i) {
    char byte = static_cast<char>(0x80 + i);
    unsigned char wide[4];
    char *in = &byte;
    char *out = reinterpret_cast<char *>(wide);
    size_t inLeft = 1;
    size_t outLeft = sizeof wide;
    if (iconv(converter, &in, &inLeft, &out, &outLeft) == 0 && outLeft == 0) {
      characters[i] = char32_t{wide[0]} | char32_t{wide[1]} << 8 | char32_t{wide[2]} << 16;
    }
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
  }
  iconv_close(converter);
  return characters;
}

char32_t windows1252(uint32_t code) {
  static const UpperHalf characters = readUpperHalf("WINDOWS-1252");
  return code < 0x80 ? code : code < 0x100 ? characters[code - 0x80] : kReplacement;
}

char32_t windows1251(uint32_t code) {
  static const UpperHalf characters = readUpperHalf("WINDOWS-1251");
  return code < 0x80 ? code : code < 0x100 ? characters[code - 0x80] : kReplacement;
}

// How many bytes the UTF-8 sequence has that begins with `byte`; 0 when none does.
uint32_t sequenceLength(uint8_t byte) {
  if (byte < 0x80) return 1;
  if (byte < 0xC2) return 0;
  if (byte < 0xE0) return 2;
  if (byte < 0xF0) return 3;
  return byte < 0xF5 ? 4 : 0;
}

// Whether `byte` can follow `first` as the second byte of a sequence: this keeps out overlong
// forms, surrogates and numbers above U+10FFFF.
bool canBeSecond(uint8_t first, uint8_t byte) {
  const uint8_t low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const uint8_t high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  return low <= byte && byte <= high;
}

// Decodes the character at `text`, which is valid, and stores its length in bytes.
char32_t decodeOne(std::string_view text, size_t *length) {
  const auto first = static_cast<uint8_t>(text[0]);
  *length = sequenceLength(first);
  if (*length == 1) return first;
  char32_t character = first & (0x7Fu >> *length);
  for (size_t i = 1; i < *length; ++i) {
    character = character << 6 | (static_cast<uint8_t>(text[i]) & 0x3F);
  }
  return character;
}

bool drivesTerminal(char32_t character) {
  return character < 0x20 || (0x7F <= character && character <= 0x9F) ||
         (0x2028 <= character && character <= 0x202E) ||
         (0x2066 <= character && character <= 0x2069);
}

}  // namespace

void CharacterDecoder::setCharset(uint32_t set, std::string *utf8) {
  finish(utf8);
  set_ = set;
}

void CharacterDecoder::put(uint16_t code, std::string *utf8) {
  if (set_ == SoCharsetUtf8) {
    appendUtf8(code == 0xFFFF ? kReplacement : code, utf8);
  } else if (set_ == SoCharsetWindows1251) {
    appendUtf8(windows1251(code), utf8);
  } else if (code > 0xFF) {
    finish(utf8);
    appendUtf8(kReplacement, utf8);
  } else {
    putDefault(static_cast<uint8_t>(code), utf8);
  }
}

void CharacterDecoder::putDefault(uint8_t byte, std::string *utf8) {
  if (heldCount_ > 0) {
    const bool fits = heldCount_ == 1 ? canBeSecond(held_[0], byte) : (byte & 0xC0) == 0x80;
    if (fits) {
      held_[heldCount_++] = byte;
      if (heldCount_ == sequenceLength(held_[0])) {
        utf8->append(reinterpret_cast<const char *>(held_), heldCount_);
        heldCount_ = 0;
      }
      return;
    }
    finish(utf8);
  }
  if (sequenceLength(byte) > 1) {
    held_[heldCount_++] = byte;
  } else {
    appendUtf8(windows1252(byte), utf8);
  }
}

void CharacterDecoder::finish(std::string *utf8) {
  for (uint32_t i = 0; i < heldCount_; ++i) appendUtf8(windows1252(held_[i]), utf8);
  heldCount_ = 0;
}

void appendUtf8(char32_t character, std::string *utf8) {
  if (character > 0x10FFFF || (0xD800 <= character && character <= 0xDFFF)) {
    character = kReplacement;
  }
  const auto put = [utf8](char32_t byte) { utf8->push_back(static_cast<char>(byte)); };
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
}

void appendPrintable(std::string_view utf8, std::string *to) {
  size_t length = 0;
  for (size_t at = 0; at < utf8.size(); at += length) {
    const char32_t character = decodeOne(utf8.substr(at), &length);
    if (drivesTerminal(character)) {
      appendUtf8(kReplacement, to);
    } else {
      to->append(utf8, at, length);
    }
  }
}

uint32_t columnCount(std::string_view utf8) {
  uint32_t count = 0;
  for (char byte : utf8) count += (byte & 0xC0) != 0x80;
  return count;
}

}  // namespace px

#include "host/reading/character_decoder.h"

#include <iconv.h>

#include <array>

#include "host/source/utf8.h"

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

void CharacterDecoder::put(std::span<const uint16_t> codes, std::string *utf8) {
  size_t at = 0;
  while (at < codes.size()) {
    size_t plain = at;
    while (heldCount_ == 0 && plain < codes.size() && codes[plain] < 0x80) ++plain;
    if (plain > at) {
      const size_t size = utf8->size();
      utf8->resize(size + plain - at);
      char *to = utf8->data() + size;
      for (size_t i = at; i < plain; ++i) *to++ = static_cast<char>(codes[i]);
      at = plain;
    } else {
      put(codes[at++], utf8);
    }
  }
}

void CharacterDecoder::putDefault(uint8_t byte, std::string *utf8) {
  if (heldCount_ > 0) {
    const bool fits = heldCount_ == 1 ? canBeSecondUtf8(held_[0], byte) : (byte & 0xC0) == 0x80;
    if (fits) {
      held_[heldCount_++] = byte;
      if (heldCount_ == utf8Length(held_[0])) {
        utf8->append(reinterpret_cast<const char *>(held_), heldCount_);
        heldCount_ = 0;
      }
      return;
    }
    finish(utf8);
  }
  if (utf8Length(byte) > 1) {
    held_[heldCount_++] = byte;
  } else {
    appendUtf8(windows1252(byte), utf8);
  }
}

void CharacterDecoder::finish(std::string *utf8) {
  for (uint32_t i = 0; i < heldCount_; ++i) appendUtf8(windows1252(held_[i]), utf8);
  heldCount_ = 0;
}

}  // namespace px

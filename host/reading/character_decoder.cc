#include "host/reading/character_decoder.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "host/source/byte_search.h"
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

// Stores eight codes as bytes, if they are ASCII.
bool storeAscii(const uint16_t *codes, char *to) {
  using Codes = uint16_t __attribute__((vector_size(16)));
  using Bytes = char __attribute__((vector_size(8)));
  Codes eight;
  std::memcpy(&eight, codes, sizeof eight);
  if (bitsOf(ByteVector(eight >= 0x80)) != 0) return false;
  const Bytes narrow = __builtin_convertvector(eight, Bytes);
  std::memcpy(to, &narrow, sizeof narrow);
  return true;
}

// Appends the codes at the head that are ASCII, up to a number; answers how many they are. Eight
// are taken in a step, the last ones with some of those before them.
size_t appendAscii(std::span<const uint16_t> codes, std::string *utf8) {
  constexpr size_t step = 8;
  char bytes[256];
  codes = codes.first(std::min(codes.size(), sizeof bytes));
  const size_t size = codes.size();
  size_t count = 0;
  while (count + step <= size && storeAscii(&codes[count], bytes + count)) count += step;
  if (count > 0 && size - count < step && storeAscii(&codes[size - step], bytes + size - step)) {
    count = size;
  }
  for (; count < codes.size() && codes[count] < 0x80; ++count) {
    bytes[count] = static_cast<char>(codes[count]);
  }
  utf8->append(bytes, count);
  return count;
}

}  // namespace

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
  while (!codes.empty()) {
    if (heldCount_ == 0) codes = codes.subspan(appendAscii(codes, utf8));
    // What follows is mostly the characters of one word.
    while (!codes.empty() && (heldCount_ > 0 || codes.front() >= 0x80)) {
      put(codes.front(), utf8);
      codes = codes.subspan(1);
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

void CharacterDecoder::giveUpHeld(std::string *utf8) {
  for (uint32_t i = 0; i < heldCount_; ++i) appendUtf8(windows1252(held_[i]), utf8);
  heldCount_ = 0;
}

}  // namespace px

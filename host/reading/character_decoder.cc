#include "host/reading/character_decoder.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <utility>

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

// Eight codes are taken at a step.
constexpr size_t kStep = 8;

// Stores so many codes as bytes. Answers how many at their head are ASCII.
size_t storeStep(const uint16_t *codes, char *to) {
  using Codes = uint16_t __attribute__((vector_size(2 * kStep)));
  using Bytes = char __attribute__((vector_size(kStep)));
  Codes step;
  std::memcpy(&step, codes, sizeof step);
  const Bytes narrow = __builtin_convertvector(step, Bytes);
  std::memcpy(to, &narrow, sizeof narrow);
  const uint32_t others = bitsOf(ByteVector(step >= 0x80));
  return others == 0 ? kStep : static_cast<size_t>(std::countr_zero(others)) / 2;
}

// Stores the ASCII characters at the head of `*codes` and takes them away. Answers the end of what
// was stored, behind which the rest of a step may be overwritten.
char *storeAscii(std::span<const uint16_t> *codes, char *to) {
  const size_t size = codes->size();
  size_t count = 0;
  size_t step = kStep;
  while (step == kStep && size - count >= kStep) {
    step = storeStep(&(*codes)[count], to + count);
    count += step;
  }
  // The last ones together with some of those before them.
  if (step == kStep && count >= kStep &&
      storeStep(&(*codes)[size - kStep], to + size - kStep) == kStep) {
    count = size;
  }
  while (count < size && (*codes)[count] < 0x80) {
    to[count] = static_cast<char>((*codes)[count]);
    ++count;
  }
  *codes = codes->subspan(count);
  return to + count;
}

// Stores the UTF-8 sequence of several bytes that stands whole at the head of the codes. Answers
// its length, or 0 where there is none: those are for putDefault.
size_t storeSequence(std::span<const uint16_t> codes, char *to) {
  const uint16_t first = codes[0];
  const size_t length = first > 0xFF ? 0 : utf8Length(static_cast<uint8_t>(first));
  if (length < 2 || length > codes.size() || codes[1] > 0xFF) return 0;
  bool fits = canBeSecondUtf8(static_cast<uint8_t>(first), static_cast<uint8_t>(codes[1]));
  for (size_t i = 0; i < length; ++i) {
    fits = fits && (i < 2 || (codes[i] & 0xFFC0) == 0x80);
    to[i] = static_cast<char>(codes[i]);
  }
  return fits ? length : 0;
}

}  // namespace

std::string_view CharacterDecoder::decode(std::span<const uint16_t> codes, bool more) {
  constexpr size_t longest = 3;  // bytes of a code, or of a byte that is no UTF-8
  const size_t room = (codes.size() + std::size(held_)) * longest + kStep;
  if (utf8_.size() < room) utf8_.resize(room);
  char *to = utf8_.data();
  while (!codes.empty()) {
    if (heldCount_ == 0) to = storeAscii(&codes, to);
    // What follows is mostly the characters of one word.
    while (!codes.empty() && (heldCount_ > 0 || codes.front() >= 0x80)) {
      const bool canBeSequence = heldCount_ == 0 && isDefault();
      const size_t length = canBeSequence ? storeSequence(codes, to) : 0;
      to = length > 0 ? to + length : put(codes.front(), to);
      codes = codes.subspan(std::max<size_t>(length, 1));
    }
  }
  if (!more && heldCount_ > 0) to = giveUpHeld(to);
  return {utf8_.data(), to};
}

char *CharacterDecoder::put(uint16_t code, char *to) {
  if (isDefault() && code <= 0xFF) return putDefault(static_cast<uint8_t>(code), to);
  if (isDefault()) return storeUtf8(kReplacement, giveUpHeld(to));
  if (set_ == SoCharsetWindows1251) return storeUtf8(windows1251(code), to);
  return storeUtf8(code == 0xFFFF ? kReplacement : code, to);
}

char *CharacterDecoder::putDefault(uint8_t byte, char *to) {
  if (heldCount_ > 0) {
    const bool fits = heldCount_ == 1 ? canBeSecondUtf8(held_[0], byte) : (byte & 0xC0) == 0x80;
    if (fits) {
      held_[heldCount_++] = byte;
      if (heldCount_ < utf8Length(held_[0])) return to;
      return std::copy_n(held_, std::exchange(heldCount_, 0), to);
    }
    to = giveUpHeld(to);
  }
  if (utf8Length(byte) <= 1) return storeUtf8(windows1252(byte), to);
  held_[heldCount_++] = byte;
  return to;
}

char *CharacterDecoder::giveUpHeld(char *to) {
  for (uint32_t i = 0; i < heldCount_; ++i) to = storeUtf8(windows1252(held_[i]), to);
  heldCount_ = 0;
  return to;
}

}  // namespace px

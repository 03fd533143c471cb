// Searches for the first byte of a set, sixteen bytes at a step.
//
// A set is a function from sixteen bytes to all ones where a byte is in it.

#ifndef PX_HOST_SOURCE_BYTE_SEARCH_H
#define PX_HOST_SOURCE_BYTE_SEARCH_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace px {

using ByteVector = uint8_t __attribute__((vector_size(16)));

// One bit for each byte of `in`, which is all ones or zero; the first byte's is the lowest.
inline uint32_t bitsOf(ByteVector in) {
#ifdef __SSE2__
  return static_cast<uint32_t>(_mm_movemask_epi8(std::bit_cast<__m128i>(in)));
#else
  uint32_t bits = 0;
  for (int i = 0; i < 16; ++i) bits |= (in[i] & 1U) << i;
  return bits;
#endif
}

inline ByteVector isByte(ByteVector bytes, char c) {
  return ByteVector(bytes == static_cast<uint8_t>(c));
}

template <class Word>
uint64_t wordAt(const char *from) {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

inline ByteVector vectorAt(const char *from) {
  ByteVector bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  return bytes;
}

// The bytes at `from`, `count` of them, fewer than sixteen, with zeros behind them. They are put
// together from words that overlap, since a copy of any length is a call.
inline ByteVector shortVector(const char *from, size_t count) {
  using Words = uint64_t __attribute__((vector_size(16)));
  Words words = {};
  if constexpr (std::endian::native != std::endian::little) {
    std::memcpy(&words, from, count);
  } else if (count > 8) {
    words[0] = wordAt<uint64_t>(from);
    words[1] = wordAt<uint64_t>(from + count - 8) >> (8 * (16 - count));
  } else if (count >= 4) {
    words[0] = wordAt<uint32_t>(from) | wordAt<uint32_t>(from + count - 4) << (8 * (count - 4));
  } else {
    for (size_t i = 0; i < count; ++i) words[0] |= wordAt<uint8_t>(from + i) << (8 * i);
  }
  return std::bit_cast<ByteVector>(words);
}

// How many bytes at the head of `text` are not in the set.
template <class Set>
size_t lengthBefore(std::string_view text, Set set) {
  constexpr size_t step = sizeof(ByteVector);
  size_t at = 0;
  for (; text.size() - at >= step; at += step) {
    const uint32_t bits = bitsOf(set(vectorAt(text.data() + at)));
    if (bits != 0) return at + static_cast<size_t>(std::countr_zero(bits));
  }
  // A bit behind the last byte ends the search.
  const size_t rest = text.size() - at;
  const uint32_t bits = bitsOf(set(shortVector(text.data() + at, rest))) | 1U << rest;
  return at + static_cast<size_t>(std::countr_zero(bits));
}

}  // namespace px

#endif

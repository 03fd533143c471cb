// Searches for the next byte of a set, sixteen bytes a step.
//
// A set is a function from sixteen bytes to all ones where a byte is in it. Sixteen bytes at a step
// are read, so a search reads up to fifteen bytes behind what it finds; it has no end, so a byte of
// the set must stand somewhere ahead. The stream's buffer is made for this, see stream.h.

#ifndef PX_VCRD_INPUT_BYTE_SEARCH_H
#define PX_VCRD_INPUT_BYTE_SEARCH_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

using ByteVector = uint8_t __attribute__((vector_size(16)));
using SignedByteVector = int8_t __attribute__((vector_size(16)));

inline ByteVector LoadBytes(const void *from) {
  ByteVector bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  return bytes;
}

// The first `count` bytes, of at most sixteen, and zeros behind them.
inline ByteVector KeepBytes(ByteVector bytes, size_t count) {
  static constexpr auto kOnesThenZeros = [] {
    std::array<uint8_t, 32> mask{};
    for (size_t i = 0; i < 16; ++i) mask[i] = 0xFF;
    return mask;
  }();
  return bytes & LoadBytes(kOnesThenZeros.data() + 16 - count);
}

// One bit for each byte of `in`, which is all ones or zero; the first byte's is the lowest.
inline uint32_t BitsOf(ByteVector in) {
#ifdef __SSE2__
  return static_cast<uint32_t>(_mm_movemask_epi8(std::bit_cast<__m128i>(in)));
#else
  uint32_t bits = 0;
  for (int i = 0; i < 16; ++i) bits |= (in[i] & 1U) << i;
  return bits;
#endif
}

// Sets that others are made of.
inline ByteVector IsByte(ByteVector b, char c) { return ByteVector(b == static_cast<uint8_t>(c)); }
inline ByteVector IsControl(ByteVector b) { return ByteVector(b < 0x20); }
// One comparison for both.
inline ByteVector IsControlOrHigh(ByteVector b) {
  return ByteVector(std::bit_cast<SignedByteVector>(b) < 0x20);
}

template <typename Set>
inline const uint8_t *FindByte(Set set, const uint8_t *p) {
  for (;; p += 16) {
    const uint32_t bits = BitsOf(set(LoadBytes(p)));
    if (bits != 0) return p + std::countr_zero(bits);
  }
}

inline const uint8_t *FindLineEnd(const uint8_t *p) {
  return FindByte([](ByteVector b) { return IsByte(b, '\r') | IsByte(b, '\n'); }, p);
}

#endif

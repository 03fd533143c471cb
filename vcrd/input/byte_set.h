// Sets of byte values, and the search for the first byte of a set, by which stretches of a buffer
// in which nothing special stands are passed over at once. Two sets that end very long stretches,
// lines and Base64 text, have a search of their own, sixteen bytes a step.

#ifndef PX_VCRD_INPUT_BYTE_SET_H
#define PX_VCRD_INPUT_BYTE_SET_H

#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>

struct ByteSet {
  uint8_t Has[256] = {};

  constexpr ByteSet() = default;
  constexpr ByteSet(std::initializer_list<uint8_t> bytes) {
    for (const uint8_t byte : bytes) Has[byte] = 1;
  }
  constexpr ByteSet With(uint8_t first, uint8_t last) const {
    ByteSet result = *this;
    for (int byte = first; byte <= last; ++byte) result.Has[byte] = 1;
    return result;
  }
};

// Answers the first byte from `begin` that is in `set`, or `end`.
inline const uint8_t *FindByteOf(const ByteSet &set, const uint8_t *begin, const uint8_t *end) {
  const uint8_t *p = begin;
  for (; end - p >= 4; p += 4) {
    if ((set.Has[p[0]] | set.Has[p[1]]) | (set.Has[p[2]] | set.Has[p[3]])) break;
  }
  while (p != end && set.Has[*p] == 0) ++p;
  return p;
}

using ByteVector = uint8_t __attribute__((vector_size(16)));

// FindByteOf sixteen bytes a step: `isIn` gives, for a vector of bytes, all ones at each byte that
// is in the set.
template <typename IsIn>
inline const uint8_t *FindByteBySteps(const ByteSet &set, IsIn isIn, const uint8_t *begin,
                                      const uint8_t *end) {
  const uint8_t *p = begin;
  for (; end - p >= 16; p += 16) {
    ByteVector bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    const auto found = isIn(bytes);
    uint64_t halves[2];
    std::memcpy(halves, &found, sizeof halves);
    if ((halves[0] | halves[1]) == 0) continue;
    if constexpr (std::endian::native != std::endian::little) break;
    return halves[0] != 0 ? p + std::countr_zero(halves[0]) / 8
                          : p + 8 + std::countr_zero(halves[1]) / 8;
  }
  return FindByteOf(set, p, end);
}

inline constexpr ByteSet kLineEndSet = {'\r', '\n'};

// Answers the first CR or LF from `begin`, or `end`.
inline const uint8_t *FindLineEnd(const uint8_t *begin, const uint8_t *end) {
  const auto isIn = [](ByteVector b) { return (b == uint8_t{'\r'}) | (b == uint8_t{'\n'}); };
  return FindByteBySteps(kLineEndSet, isIn, begin, end);
}

#endif

// Sets of byte values, and the search for the first byte of a set. Long stretches of a buffer in
// which nothing special stands are passed over with it at once, eight bytes a step.

#ifndef PX_VCRD_INPUT_BYTE_SET_H
#define PX_VCRD_INPUT_BYTE_SET_H

#include <cstdint>
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
  for (; end - p >= 8; p += 8) {
    if (set.Has[p[0]] | set.Has[p[1]] | set.Has[p[2]] | set.Has[p[3]] | set.Has[p[4]] |
        set.Has[p[5]] | set.Has[p[6]] | set.Has[p[7]]) {
      break;
    }
  }
  while (p != end && set.Has[*p] == 0) ++p;
  return p;
}

#endif

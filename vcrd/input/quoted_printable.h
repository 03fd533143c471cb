#ifndef PX_VCRD_INPUT_QUOTED_PRINTABLE_H
#define PX_VCRD_INPUT_QUOTED_PRINTABLE_H

#include <array>
#include <cstdint>

#include "vcrd/input/stream.h"

// VcardDecodeQp where the two digits don't stand in the buffer.
int32_t VcardDecodeQpSlowly(uint8_t *out, VcardStream *stream, int16_t *atEof);

// The value of each hex digit, in either case; a bad digit counts as 15.
inline constexpr std::array<uint8_t, 256> kNibbles = [] {
  std::array<uint8_t, 256> nibbles;
  nibbles.fill(15);
  for (uint8_t i = 0; i < 10; ++i) nibbles['0' + i] = i;
  for (uint8_t i = 0; i < 6; ++i)
    nibbles['A' + i] = nibbles['a' + i] = static_cast<uint8_t>(10 + i);
  return nibbles;
}();
inline uint8_t VcardJoinNibbles(uint8_t first, uint8_t second) {
  return static_cast<uint8_t>(kNibbles[first] << 4 | kNibbles[second]);
}

// Decodes what follows an equals sign, which the caller has just taken, and stores one byte at
// `out`: the value of two hex digits, or, behind a soft line break, the first byte of the next
// line or the value of an escape that stands there. A bad digit counts as 15. Sets `*atEof` when a
// soft line break of CRs alone runs into the byte 255, the one end of the input that is told.
// Always answers 0.
inline int32_t VcardDecodeQp(uint8_t *out, VcardStream *stream, int16_t *atEof) {
  if (stream->Remaining >= 2 && stream->Ptr[0] != '\r' && stream->Ptr[0] != '\n') [[likely]] {
    *out = VcardJoinNibbles(stream->Ptr[0], stream->Ptr[1]);
    VcardStreamTake(stream, stream->Ptr + 2);
    return 0;
  }
  return VcardDecodeQpSlowly(out, stream, atEof);
}

#endif

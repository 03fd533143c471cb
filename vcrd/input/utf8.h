#ifndef PX_VCRD_INPUT_UTF8_H
#define PX_VCRD_INPUT_UTF8_H

#include <bit>
#include <cstdint>

#include "vcrd/frame/vcard_data.h"
#include "vcrd/input/stream.h"

// How many bits are set above the first zero bit: 0 for ASCII, 1 for a continuation byte, otherwise
// the length of the form that the byte begins.
constexpr int VcardLeadingOnes(uint8_t byte) { return std::countl_one(byte); }

// The code of a two- or three-byte form. The top bits of the bytes behind the lead aren't looked
// at: whatever stands there gives its low six bits.
constexpr uint16_t VcardJoinUtf8(uint8_t lead, uint8_t second) {
  return static_cast<uint16_t>((lead & 0x1F) << 6 | (second & 0x3F));
}
constexpr uint16_t VcardJoinUtf8(uint8_t lead, uint8_t second, uint8_t third) {
  return static_cast<uint16_t>((lead & 0x0F) << 12 | (second & 0x3F) << 6 | (third & 0x3F));
}

// Decodes the form that `lead`, a byte already taken, begins, and consumes the rest of it from
// `stream`. In a quoted-printable line (`Encoding` 2) a byte of the form can itself be an escape.
// Answers the code, 0x8000 and above as a negative number of 16 bits, or -1 for a form that has
// none: ASCII, a stray continuation byte, four bytes and more. The bytes of a long form are
// dropped raw.
int32_t VcardDecodeUtf8(uint16_t lead, VcardStream *stream, VcardData *data);

#endif

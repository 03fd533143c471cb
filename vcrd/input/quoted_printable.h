#ifndef PX_VCRD_INPUT_QUOTED_PRINTABLE_H
#define PX_VCRD_INPUT_QUOTED_PRINTABLE_H

#include <cstdint>

#include "vcrd/input/stream.h"

// Decodes what follows an equals sign, which the caller has just taken, and stores one byte at
// `out`: the value of two hex digits, or, behind a soft line break, the first byte of the next
// line or the value of an escape that stands there. A bad digit counts as 15. Sets `*atEof` when a
// soft line break begun by CR ends in the byte 255, the one end of the input that is told. Always
// answers 0.
int32_t VcardDecodeQp(uint8_t *out, VcardStream *stream, int16_t *atEof);

#endif

// Logical characters: the text of a content line without its folds and escapes.
//
// A run of CR and LF, in any mix, is one line end. When a blank or a tab stands behind it, the line
// goes on: version 1 keeps that white byte in the value, later versions drop it. Otherwise the
// line has ended, and the byte that was read to find that out is pushed back: it is the next
// character, delivered without any handling. From version 2 on a backslash escapes a comma, a
// semicolon, a backslash and the letter n.

#ifndef PX_VCRD_INPUT_LOGICAL_READER_H
#define PX_VCRD_INPUT_LOGICAL_READER_H

#include <algorithm>
#include <cstdint>

#include "vcrd/frame/vcard_data.h"
#include "vcrd/input/byte_set.h"
#include "vcrd/input/stream.h"

enum : uint8_t {
  kTab = 0x09,
  kLf = 0x0A,
  kCr = 0x0D,
  kSpace = 0x20,
  kBackslash = 0x5C,
  kEnd = 0xFF  // what the end of the input reads as, and a real byte 0xFF too
};

// VcardGetChar for the bytes that need care.
int32_t VcardGetSpecialChar(uint8_t *out, VcardData *data);

// Stores the next logical character at `out`. Answers 0 when it belongs to the line, and 1 when the
// line has ended: the character is then the CR or LF that began the line end, or 255 at the end of
// the input. An escaped line feed belongs to the line.
inline int32_t VcardGetChar(uint8_t *out, VcardData *data) {
  VcardStream *stream = data->Stream;
  if (data->HasPushback == 0 && stream->Remaining > 0) [[likely]] {
    const uint8_t c = *stream->Ptr;
    if (c != kCr && c != kLf && c != kBackslash) [[likely]] {
      --stream->Remaining;
      ++stream->Ptr;
      *out = c;
      return 0;
    }
  }
  return VcardGetSpecialChar(out, data);
}

// Answers the first raw byte that isn't CR, LF, blank or tab, a pushed-back one included; 255 at
// the end of the input.
uint8_t VcardSkipSpace(VcardData *data);

// The bytes ahead that VcardGetChar would deliver as they stand, up to the first one in `stop`,
// which must hold at least CR, LF and the backslash. Empty while a byte is pushed back.
inline VcardStretch VcardPlainRun(const ByteSet &stop, const VcardData *data) {
  const VcardStretch stretch = VcardStreamStretch(data->Stream);
  if (data->HasPushback != 0) return {stretch.Begin, stretch.Begin};
  return {stretch.Begin, FindByteOf(stop, stretch.Begin, stretch.End)};
}

// Moves the plain run to `to`, of which there is room for `room` bytes; the rest of it is dropped.
// Answers how many were stored. For runs of a few bytes this is faster than a search and a copy.
inline size_t VcardMovePlainRun(const ByteSet &stop, char *to, size_t room, VcardData *data) {
  if (data->HasPushback != 0) return 0;
  const VcardStretch stretch = VcardStreamStretch(data->Stream);
  const size_t most = std::min(room, static_cast<size_t>(stretch.End - stretch.Begin));
  size_t stored = 0;
  for (; stored < most && stop.Has[stretch.Begin[stored]] == 0; ++stored) {
    to[stored] = static_cast<char>(stretch.Begin[stored]);
  }
  const uint8_t *p = stretch.Begin + stored;
  if (stored == room) p = FindByteOf(stop, p, stretch.End);
  VcardStreamTake(data->Stream, p);
  return stored;
}

// Consumes the rest of the logical line.
void VcardSkipLine(VcardData *data);

#endif

// Logical characters: the text of a content line without its folds and escapes.
//
// A run of CR and LF, in any mix, is one line end. When a blank or a tab stands behind it, the line
// goes on: version 1 keeps that white byte in the value, later versions drop it. Otherwise the
// line has ended, and the byte that was read to find that out is pushed back: it is the next
// character, delivered without any handling. From version 2 on a backslash escapes a comma, a
// semicolon, a backslash and the letter n.
//
// VcardGetChar is the slow way, which knows all of this. The fast ways, wherever they are, pass
// over stretches of the buffer at once and stop in front of what they don't take; they ask the
// functions below how a line goes on in the buffer.

#ifndef PX_VCRD_INPUT_LOGICAL_READER_H
#define PX_VCRD_INPUT_LOGICAL_READER_H

#include <cstdint>

#include "vcrd/frame/vcard_data.h"
#include "vcrd/input/byte_search.h"
#include "vcrd/input/stream.h"

enum : uint8_t {
  kTab = 0x09,
  kLf = 0x0A,
  kCr = 0x0D,
  kSpace = 0x20,
  kBackslash = 0x5C,
  kEnd = 0xFF  // what the end of the input reads as, and a real byte 0xFF too
};

inline bool VcardIsWhite(uint8_t c) {
  return c <= kSpace && (c == kCr || c == kLf || c == kSpace || c == kTab);
}

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

// How a line goes on behind a line end that stands in the buffer.
enum class VcardLineEnd {
  Fold,    // `Next` is the next byte of the line, of version 1 the white one
  End,     // `Next` is the first byte of the next line
  Unknown  // for VcardGetChar: a run of line ends, or one at the buffer's end
};
struct VcardLineEndAt {
  VcardLineEnd Kind;
  const uint8_t *Next;
};

// Looks at the CR or LF at `p`, which can be the reader's own at `end`: that one makes a line end
// which reaches the buffer's end look like a run of them. Where the answer isn't Unknown,
// `PushbackChar` is the byte that VcardGetChar would have pushed back: it stays in the saved state.
inline VcardLineEndAt VcardLookAtLineEnd(const uint8_t *p, const uint8_t *end, VcardData *data) {
  const uint8_t *const behind = p + (p[0] == kCr && p[1] == kLf ? 2 : 1);
  if (p == end) return {VcardLineEnd::Unknown, p};
  if (!VcardIsWhite(*behind)) {
    data->PushbackChar = *behind;
    return {VcardLineEnd::End, behind};
  }
  const uint8_t next = behind[1];
  if (*behind == kCr || *behind == kLf || next == kCr || next == kLf) {
    return {VcardLineEnd::Unknown, p};
  }
  if (data->Version != 1) return {VcardLineEnd::Fold, behind + 1};
  data->PushbackChar = next;
  return {VcardLineEnd::Fold, behind};
}

// Takes the bytes up to the first of the next line, which is pushed back.
inline void VcardTakeLineEnd(const uint8_t *next, VcardData *data) {
  VcardStreamTake(data->Stream, next + 1);
  data->HasPushback = 1;
}

// Consumes the rest of the logical line.
void VcardSkipLine(VcardData *data);

#endif

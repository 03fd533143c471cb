#include "vcrd/input/logical_reader.h"

namespace {

// Called just behind a CR or LF that stands at `out`. Answers 1 when the logical line has ended,
// with the first byte of the next line pushed back and `out` as it was; 0 when it goes on behind a
// fold, with the next character at `out`. That character isn't examined: it can be a line end
// again, or 255 behind the last byte of the input.
int32_t VcardFoldLine(uint8_t *out, VcardData *data) {
  VcardStream *stream = data->Stream;
  uint8_t b;
  do {
    b = static_cast<uint8_t>(VcardStreamGetByte(stream));
  } while (b == kCr || b == kLf);
  if (b != kSpace && b != kTab) {
    data->HasPushback = 1;
    data->PushbackChar = b;
    return 1;
  }
  const auto n = static_cast<uint8_t>(VcardStreamGetByte(stream));
  if (data->Version == 1) {
    *out = b;
    data->HasPushback = 1;
    data->PushbackChar = n;
  } else {
    *out = n;
  }
  return 0;
}

// Called behind a backslash. A byte that makes no escape with it goes back into the buffer, which
// it was just taken from, and the backslash stands for itself.
int32_t TakeEscape(uint8_t *out, int32_t result, VcardStream *stream) {
  const int32_t r = VcardStreamGetByte(stream);
  switch (r) {
    case ',':
    case ';':
    case '\\':
      *out = static_cast<uint8_t>(r);
      return result;
    case 'n':
    case 'N':
      *out = kLf;
      return result;
    case -1:
      *out = kEnd;
      return 1;
    default:
      ++stream->Remaining;
      --stream->Ptr;
      *out = kBackslash;
      return result;
  }
}

}  // namespace

int32_t VcardGetSpecialChar(uint8_t *out, VcardData *data) {
  if (data->HasPushback == 1) {
    *out = data->PushbackChar;
    data->HasPushback = 0;
    return 0;
  }
  const int32_t r = VcardStreamGetByte(data->Stream);
  auto c = static_cast<uint8_t>(r);
  int32_t result = 0;
  if (c == kLf) result = VcardFoldLine(&c, data);
  // Also a CR that a fold begun by LF has just delivered: it begins a further line end. A fold
  // begun by CR delivers its character unseen, so the two aren't alike.
  if (c == kCr) result = VcardFoldLine(&c, data);
  if (c == kBackslash && data->Version >= 2) return TakeEscape(out, result, data->Stream);
  if (r == -1) result = 1;
  *out = c;
  return result;
}

uint8_t VcardSkipSpace(VcardData *data) {
  if (data->HasPushback == 1) {
    data->HasPushback = 0;
    if (!VcardIsWhite(data->PushbackChar)) return data->PushbackChar;
  }
  uint8_t c;
  do {
    c = static_cast<uint8_t>(VcardStreamGetByte(data->Stream));
  } while (VcardIsWhite(c));
  return c;
}

void VcardSkipLine(VcardData *data) {
  VcardStream *stream = data->Stream;
  uint8_t c;
  do {
    if (data->HasPushback != 0 || stream->Remaining <= 0) continue;
    // The fast way, from line end to line end in the buffer. An escape can't hide one, so the
    // search needs no look at backslashes.
    const VcardStretch rest = VcardStreamStretch(stream);
    const uint8_t *p = FindLineEnd(rest.Begin);
    for (;;) {
      const VcardLineEndAt lineEnd = VcardLookAtLineEnd(p, rest.End, data);
      if (lineEnd.Kind == VcardLineEnd::End) {
        VcardTakeLineEnd(lineEnd.Next, data);
        return;
      }
      if (lineEnd.Kind == VcardLineEnd::Unknown) break;
      p = FindLineEnd(lineEnd.Next);
    }
    VcardStreamTake(stream, p);
  } while (VcardGetChar(&c, data) == 0);
}

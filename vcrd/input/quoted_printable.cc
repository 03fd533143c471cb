#include "vcrd/input/quoted_printable.h"

#include "vcrd/input/logical_reader.h"

namespace {

// The end of the input reads as 255, a bad digit like others.
uint8_t GetByte(VcardStream *stream) { return static_cast<uint8_t>(VcardStreamGetByte(stream)); }

}  // namespace

int32_t VcardDecodeQpSlowly(uint8_t *out, VcardStream *stream, int16_t *atEof) {
  uint8_t first = GetByte(stream);
  if (first == kCr || first == kLf) {
    // A soft line break: a run of CRs, then an LF, or either alone.
    bool lineFeed = first == kLf;
    uint8_t next = first;
    if (!lineFeed) {
      do {
        next = GetByte(stream);
      } while (next == kCr);
      if (next == kEnd) {
        *atEof = 1;
        *out = kEnd;
        return 0;
      }
      lineFeed = next == kLf;
    }
    if (lineFeed) next = GetByte(stream);
    if (next != '=') {
      *out = next;  // data, whatever it is
      return 0;
    }
    first = GetByte(stream);  // a further escape; a line end here is a bad digit, not a soft break
  }
  const uint8_t second = GetByte(stream);
  *out = VcardJoinNibbles(first, second);
  return 0;
}

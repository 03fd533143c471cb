// The buffered reader over the host's I/O object.
//
//   Buffer              Ptr                 Buffer + Count      Buffer + Size
//   |---- taken --------|---- Remaining ----|CR|--- unused -----|--- padding ---|
//   Base                Base + Count - Remaining
//
// Behind the bytes that were read stands a CR of the reader's own, which ends every search, and the
// padding keeps what a search reads behind it inside the buffer. So searches need no look at the
// end: they go on until they find something, and see whether it stands before the end.
//
// The raw read takes every byte of the input as it is. Its end is told by the answer -1; callers
// that keep only 8 bits see the byte 255 there, like a real byte 0xFF. The reader has no end state:
// a read at the end asks the host again. What the host has from position 2^32 - 1 on is no part of
// the input, so that every position has 32 bits.

#ifndef PX_VCRD_INPUT_STREAM_H
#define PX_VCRD_INPUT_STREAM_H

#include <cstddef>
#include <cstdint>

#include "px/vcrd.h"

struct VcardStream {
  int32_t Remaining;  // bytes of Buffer not yet taken; -1 between a read's decrement and its refill
  uint32_t Count;     // bytes that the last refill placed in Buffer
  int64_t Base;       // position of Buffer[0]
  const uint8_t *Ptr;
  VcardIo *Io;  // the host's
  uint8_t *Buffer;
  uint32_t Size;
};

// Refills the buffer at the position behind it and answers its first byte, or -1 at the end of the
// input or when a call of the host failed. Only the raw read calls it.
int32_t VcardStreamFill(VcardStream *stream);

// The raw read: the next byte, or -1.
inline int32_t VcardStreamGetByte(VcardStream *stream) {
  if (--stream->Remaining < 0) [[unlikely]]
    return VcardStreamFill(stream);
  return *stream->Ptr++;  // NOLINT(clang-analyzer-core.NullDereference): it is set where bytes remain
}

// Position of the next byte of the raw read.
inline uint32_t VcardStreamPosition(const VcardStream *stream) {
  return static_cast<uint32_t>(stream->Base + stream->Count - stream->Remaining);
}

// Moves the stream so that the next raw read gives the byte at `position`. Answers 0, or -1 when
// the host's Seek failed; the stream is at `position` all the same, and its refill tries again.
// A pending pushback isn't touched.
int32_t VcardStreamSeek(VcardStream *stream, uint32_t position);

// What a search may read behind Buffer + Size, the CR included.
inline constexpr size_t kBufferPadding = 64;

// The bytes of the buffer that were not yet taken. A CR stands at `End`.
struct VcardStretch {
  const uint8_t *Begin;
  const uint8_t *End;
};
inline VcardStretch VcardStreamStretch(const VcardStream *stream) {
  return {stream->Ptr, stream->Ptr + stream->Remaining};
}

// Takes the bytes of the buffer before `to`, which lies in the stretch or at its end; or gives back
// the last ones that were taken.
inline void VcardStreamTake(VcardStream *stream, const uint8_t *to) {
  stream->Remaining -= static_cast<int32_t>(to - stream->Ptr);
  stream->Ptr = to;
}

#endif

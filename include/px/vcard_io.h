/*
 * The I/O object: how the filter reads its input, and what it hands out for embedded content.
 *
 * A host's object begins with the nine slots below. What stands behind them is the host's own; the
 * filter never looks there, and never copies, moves or frees the object. The slots take the object
 * itself as first argument, Open excepted. They are called on the host's thread, only during a
 * call of one of the filter's entry points.
 */
#ifndef PX_VCARD_IO_H
#define PX_VCARD_IO_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct VcardIo VcardIo;

/* The selector that the filter asks of GetInfo, always with a null argument. */
enum { VcardIoInfoWide = 24 };

/* The type numbers and the flags that the filter passes to Open, when content is opened. */
enum {
  VcardIoOpenRange = 8,   /* record: VcardRangeSpec; a stretch of another object */
  VcardIoOpenDecode = 19, /* record: VcardDecodeSpec; the decoded bytes of another object */
  VcardIoOpenFlags = 9
};

struct VcardIo {
  /*
   * Slot 0. Ends the object and frees what belongs to it. The filter closes only objects that it
   * opened itself through Open, and doesn't look at the answer.
   */
  int32_t (*Close)(VcardIo *io);

  /*
   * Slot 1. Stores up to `size` bytes from the current position at `to`, and their number at
   * `count`: at most `size`, fewer than asked for at any time, 0 only when nothing is left.
   * Answers 0; anything else is a failure, and the filter drops what was stored. To the filter a
   * failure looks like the end of the input, except that its next read tries again.
   */
  int32_t (*Read)(VcardIo *io, void *to, uint32_t size, uint32_t *count);

  /* Slot 2. Never called on the input. An object of VwDoSpecial forwards it. */
  int32_t (*Write)(VcardIo *io, uint64_t a, uint64_t b, uint64_t c);

  /*
   * Slot 3. Moves to `position`, in bytes. The filter always passes the whence 0: from the start of
   * the object. Answers 0 when the object stands there.
   */
  int32_t (*Seek)(VcardIo *io, uint16_t whence, uint64_t position);

  /*
   * Slot 4. Stores the position. The filter sets `*position` to 0 before the call and doesn't look
   * at the answer, so an object that can't tell reads as one that stands at 0.
   */
  int32_t (*Tell)(VcardIo *io, uint32_t *position);

  /*
   * Slot 5. Asked with VcardIoInfoWide before every read: the answer 0 means that Seek64 and Tell64
   * are to be used where both are there, any other answer means that they are not.
   */
  int32_t (*GetInfo)(VcardIo *io, uint32_t selector, void *argument);

  /*
   * Slot 6. Makes a new object of the given type out of `record` and stores it at `result`. Called
   * from VwDoSpecial only; `record` is valid during the call. Answers 0 when the object stands; it
   * then belongs to the filter until it calls the new object's Close. May be null in a host that
   * never calls VwDoSpecial.
   */
  int32_t (*Open)(VcardIo **result, uint32_t type, void *record, uint32_t flags);

  /* Slots 7 and 8. As Seek and Tell, in 64 bits. Either may be null. */
  int32_t (*Seek64)(VcardIo *io, uint16_t whence, int64_t position);
  int32_t (*Tell64)(VcardIo *io, int64_t *position);
};

/* The record of VcardIoOpenRange, 24 bytes. The new object is read-only and starts at 0. */
typedef struct VcardRangeSpec {
  VcardIo *Io;     /* offset 0: the object that holds the range; it isn't owned */
  uint64_t Start;  /* offset 8: position of the first byte, in bytes */
  uint64_t Length; /* offset 16: in bytes; it can reach one byte past the end of Io */
} VcardRangeSpec;

/* The record of VcardIoOpenDecode, 40 bytes. */
typedef struct VcardDecodeSpec {
  VcardIo *Source;        /* offset 0: the object to decode; it isn't owned and outlives this one */
  uint32_t Reserved0;     /* offset 8: 0 */
  uint32_t Kind;          /* offset 12: always 2, Base64 */
  uint8_t Reserved1[24];  /* offset 16: zeros */
} VcardDecodeSpec;

/*
 * What VwDoSpecial gives: the decoded content of an embedded object, 112 bytes. The host uses it
 * through its slots and ends it with Close, which frees it; nothing of it may be used after that.
 * It lives independently of the stream and the record, but needs the stream's VcardIo. Its slots
 * forward to the decoding object, answer what that answers, and give -4 for a null object. Seek64
 * and Tell64 are always set and may be called only if the decoding object has them.
 */
typedef struct VcardObjectIo {
  VcardIo Slots;
  void *Reserved[3];     /* offset 72: null */
  VcardIo *RangeStream;  /* offset 96: opened first, closed last */
  VcardIo *DecodeStream; /* offset 104: opened last, closed first */
} VcardObjectIo;

#ifdef __cplusplus
}
#endif

#endif

/*
 * libpx_util: options that hold for the whole process.
 *
 * A host sets an option once, before it opens streams; libraries read it. Both calls may be made
 * from any thread at any time.
 */
#ifndef PX_UTIL_H
#define PX_UTIL_H

#include <stdint.h>

#include "px/export.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
  /*
   * The size of a stream's input buffer, as a uint32_t in kilobytes (1024 bytes). The filter asks
   * for it each time that it makes a stream. Not set: the filter takes 2048 bytes.
   */
  UTOptionInputBuffer = 112,

  /* The largest value of an option, in bytes, and how many options can be set at once. */
  UTOptionMaxSize = 16,
  UTOptionMaxCount = 32
};

/*
 * Reads the value of `option` into `result`. `*size` holds the room at `result` in bytes; when the
 * answer is 0 it holds the value's size instead. Answers 0 when the value was stored; -1, with
 * nothing written, when the option isn't set or its value needs more room.
 */
PX_API int32_t UTGetGlobalOption(uint32_t option, void *result, uint32_t *size);

/*
 * Sets `option` to the `size` bytes at `value`, which are copied. A null `value` takes the option
 * away. Answers 0; -1, with nothing changed, when `size` is above UTOptionMaxSize or
 * UTOptionMaxCount other options are set.
 */
PX_API int32_t UTSetGlobalOption(uint32_t option, const void *value, uint32_t size);

#ifdef __cplusplus
}
#endif

#endif

// The slot Open of all the host's I/O objects, and how an object over another one reads it.

#ifndef PX_HOST_IO_OPEN_IO_H
#define PX_HOST_IO_OPEN_IO_H

#include <cstdint>

#include "px/vcard_io.h"

namespace px {

// Makes a RangeIo for the type VcardIoOpenRange and a Base64Io for VcardIoOpenDecode, out of the
// type's record, and stores it at `result`; `flags` aren't looked at. Its slot Close frees it.
// Answers 0, or nonzero with `*result` as it was: for any other type, for a record without an
// object or of another kind than Base64, for a range that no position can reach, and when there is
// no memory.
int32_t openIo(VcardIo **result, uint32_t type, void *record, uint32_t flags) noexcept;

// Moves `io` to `position` and reads there, as slot Read does. Objects that share one source each
// read it this way, so none relies on where another has left it.
int32_t readIoAt(VcardIo *io, uint64_t position, void *to, uint32_t size, uint32_t *count) noexcept;

}  // namespace px

#endif

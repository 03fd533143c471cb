// Input that can't be moved about in, brought into a file that can.

#ifndef PX_HOST_IO_SPOOL_H
#define PX_HOST_IO_SPOOL_H

#include "host/io/file_descriptor.h"

namespace px {

// Copies all that `input` still gives, a pipe or a terminal, to a temporary file without a name in
// TMPDIR or /tmp, which is gone when it is closed. `input` stays open. Throws std::system_error;
// the failure of the temporary file is told from that of the input by "temporary file" in the text.
// More than LargestInput bytes are refused with EFBIG, before they fill the disk.
FileDescriptor spoolInput(int input);

}  // namespace px

#endif

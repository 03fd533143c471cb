// An open file as input.

#ifndef PX_HOST_FILE_IO_H
#define PX_HOST_FILE_IO_H

#include <cstdint>

#include "host/file_descriptor.h"
#include "host/positioned_io.h"

namespace px {

// Positions of the filter have 32 bits, and past 2 GiB it reads a file wrongly, so a read there
// fails. In bytes.
constexpr uint64_t LargestInput = INT32_MAX;

// Reads at positions, so the descriptor's own position plays no part. The file must be seekable:
// see spoolInput for one that isn't. Belongs to who made it; slot Close does nothing.
class FileIo final : public PositionedIo<FileIo> {
 public:
  explicit FileIo(FileDescriptor file) : file_(std::move(file)) {}

  // The errno of the first read that failed, or 0. EFBIG when the file is larger than LargestInput.
  // The filter takes a failure for the end of the input, so a program looks here after the run.
  int error() const { return error_; }

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);

 private:
  FileDescriptor file_;
  int error_ = 0;
};

}  // namespace px

#endif

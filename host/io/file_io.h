// An open file as input.

#ifndef PX_HOST_IO_FILE_IO_H
#define PX_HOST_IO_FILE_IO_H

#include <time.h>

#include <atomic>
#include <cstdint>

#include "host/io/file_descriptor.h"
#include "host/io/positioned_io.h"

namespace px {

// Behind as many bytes the filter ends the input, so a read there fails.
constexpr uint64_t LargestInput = UINT32_MAX;

// Reads at positions, so the descriptor's own position plays no part. The file must be seekable:
// see spoolInput for one that isn't. Belongs to who made it; slot Close does nothing.
class FileIo final : public PositionedIo<FileIo> {
 public:
  // Throws std::system_error with EFBIG for a file that is larger than LargestInput.
  explicit FileIo(FileDescriptor file);

  // From now on adds to `count` how many bytes of the file have been read at least once, so to say:
  // how far the furthest read has reached. `count` isn't owned; several files may share it.
  void countIn(std::atomic<uint64_t> *count) { count_ = count; }

  // Throws std::runtime_error, whose text is for a person, when a read has failed: also when the
  // file is larger than LargestInput by now, or isn't any more what it was in the beginning: cut
  // short, written over, longer. The filter takes a failure for the end of the input, so a program
  // asks here after the run.
  void check() const;

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);

 private:
  bool isAsItWas();

  FileDescriptor file_;
  bool isRegular_ = false;  // else there is no size and no time to know it by
  uint64_t size_ = 0;       // in the beginning, as is the time of the last writing
  timespec written_{};
  std::atomic<uint64_t> *count_ = nullptr;
  uint64_t reached_ = 0;
  int error_ = 0;  // errno of the first read that failed
  bool cutShort_ = false, changed_ = false;
};

}  // namespace px

#endif

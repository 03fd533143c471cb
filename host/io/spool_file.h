// Bytes on their way through the host: written once, read at any place. A little of them is held in
// memory, more than that in a temporary file without a name.

#ifndef PX_HOST_IO_SPOOL_FILE_H
#define PX_HOST_IO_SPOOL_FILE_H

#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <string_view>

#include "host/io/file_descriptor.h"
#include "host/io/positioned_io.h"

namespace px {

// A new file without a name in TMPDIR or /tmp, gone when it is closed. Throws std::system_error
// with "temporary file" in its text.
FileDescriptor openTemporaryFile();

class SpoolFile {
 public:
  // The members throw std::system_error as openTemporaryFile does.

  void append(std::string_view bytes) {
    if (bytes.empty()) return;
    std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
    held_ += bytes.size();
  }
  // Where up to `size` bytes can be written at the end. They count when commit() is told where they
  // end, before anything else is written.
  char *room(size_t size) {
    if (capacity_ - held_ < size) makeRoom(size);
    return buffer_.get() + held_;
  }
  void commit(const char *end) { held_ = static_cast<size_t>(end - buffer_.get()); }

  uint64_t size() const { return spilled_ + held_; }

  // Stores what stands at `position`, up to `size` bytes; answers their number, less than `size`
  // only at the end.
  size_t readAt(uint64_t position, void *to, size_t size) const;

 private:
  void makeRoom(size_t size);
  void spill();

  FileDescriptor file_;
  uint64_t spilled_ = 0;  // bytes in the file; those in the buffer follow them
  size_t held_ = 0;       // bytes in the buffer
  size_t capacity_ = 0;
  std::unique_ptr<char[]> buffer_;
};

// A spool as an I/O object. Slot Close does nothing.
class SpoolIo final : public PositionedIo<SpoolIo> {
 public:
  // Shows `length` bytes from `start`. `spool` isn't owned.
  SpoolIo(const SpoolFile *spool, uint64_t start, uint64_t length)
      : spool_(spool), start_(start), length_(length) {}

  // Throws what has failed a read. The filter takes that for the end of the input.
  void check() const {
    if (failure_) std::rethrow_exception(failure_);
  }

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);

 private:
  std::exception_ptr failure_;
  const SpoolFile *spool_;
  uint64_t start_, length_;
};

}  // namespace px

#endif

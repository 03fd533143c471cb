// Another object read through a buffer, for a reader that asks for little at a time.

#ifndef PX_HOST_IO_BUFFERED_IO_H
#define PX_HOST_IO_BUFFERED_IO_H

#include <cstdint>
#include <memory>

#include "host/io/positioned_io.h"

namespace px {

// Slot Close does nothing.
class BufferedIo final : public PositionedIo<BufferedIo> {
 public:
  // `source` isn't owned and doesn't change. It is moved before each read.
  explicit BufferedIo(VcardIo *source);

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);

 private:
  static constexpr uint32_t Capacity = 64 * 1024;

  VcardIo *source_;
  uint64_t base_ = 0;  // position of the buffer's first byte
  uint32_t filled_ = 0;
  std::unique_ptr<char[]> buffer_;
};

}  // namespace px

#endif

#include "host/io/buffered_io.h"

#include <algorithm>
#include <cstring>

namespace px {

BufferedIo::BufferedIo(VcardIo *source) : source_(source), buffer_(new char[Capacity]) {}

int32_t BufferedIo::readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
  if (size >= Capacity) return readIoAt(source_, position, to, size, count);
  if (position < base_ || position >= base_ + filled_) {
    uint32_t filled = 0;
    filled_ = 0;
    const int32_t result = readIoAt(source_, position, buffer_.get(), Capacity, &filled);
    if (result != 0) return result;
    base_ = position;
    filled_ = std::min(filled, Capacity);
  }
  const auto start = static_cast<uint32_t>(position - base_);
  *count = std::min(size, filled_ - start);
  std::memcpy(to, buffer_.get() + start, *count);
  return 0;
}

}  // namespace px

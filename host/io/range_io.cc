#include "host/io/range_io.h"

#include <algorithm>

namespace px {

int32_t RangeIo::close() {
  delete this;
  return 0;
}

int32_t RangeIo::readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
  if (position >= length_) return 0;
  const auto room = static_cast<uint32_t>(std::min<uint64_t>(size, length_ - position));
  return readIoAt(source_, start_ + position, to, room, count);
}

}  // namespace px

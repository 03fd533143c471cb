#include "host/io/limited_io.h"

#include <algorithm>

namespace px {

int32_t LimitedIo::readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
  if (refusedAt_ || !limit_.allows(delivered_, reached_)) {
    if (!refusedAt_) refusedAt_ = position;
    return past_ == PastLimit::Ends ? 0 : IoFailed;
  }
  const int32_t result = readIoAt(source_, position, to, size, count);
  if (result != 0) return result;
  delivered_ += *count;
  reached_ = std::max(reached_, position + *count);
  return 0;
}

}  // namespace px

// The caller's I/O object as one of the host's: it reads the same bytes, and has all slots.

#ifndef PX_HOST_LIBRARY_CALLER_IO_H
#define PX_HOST_LIBRARY_CALLER_IO_H

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "host/io/file_io.h"
#include "host/io/positioned_io.h"
#include "host/library/use.h"

namespace px {

// Slot Close does nothing.
class CallerIo final : public PositionedIo<CallerIo> {
 public:
  // `source` isn't owned and has the slots Read, Seek and GetInfo. While they run `use`, of the
  // reader, is shut.
  CallerIo(VcardIo *source, InUse *use) : source_(source), use_(*use) {}

  // Throws std::runtime_error, whose text is for a person, when a read has failed.
  void check() const {
    if (tooLarge_) throw std::runtime_error("larger than what can be read");
    if (failed_) throw std::runtime_error("the I/O object failed");
  }

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
    const uint64_t room = position < LargestInput ? LargestInput - position : 1;
    const auto wanted = static_cast<uint32_t>(std::min<uint64_t>(size, room));
    const bool before = use_.shut(true);
    failed_ |= readIoAt(source_, position, to, wanted, count) != 0 || *count > wanted;
    use_.shut(before);
    tooLarge_ |= !failed_ && *count > 0 && position >= LargestInput;
    if (!failed_ && !tooLarge_) return 0;
    *count = 0;
    return IoFailed;
  }

 private:
  VcardIo *source_;
  InUse &use_;
  bool failed_ = false;  // once, and for good
  bool tooLarge_ = false;
};

}  // namespace px

#endif

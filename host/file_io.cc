#include "host/file_io.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace px {

int32_t FileIo::readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
  // Past the largest input one byte is asked for, only to see whether it is there.
  const uint64_t room = position < LargestInput ? LargestInput - position : 1;
  ssize_t got;
  do {
    got = pread(file_.number(), to, std::min<uint64_t>(size, room), static_cast<off_t>(position));
  } while (got < 0 && errno == EINTR);
  const bool tooLarge = got > 0 && position >= LargestInput;
  if (got < 0 || tooLarge) {
    if (error_ == 0) error_ = tooLarge ? EFBIG : errno;
    return IoFailed;
  }
  *count = static_cast<uint32_t>(got);
  return 0;
}

}  // namespace px

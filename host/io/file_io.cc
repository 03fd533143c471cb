#include "host/io/file_io.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace px {

FileIo::FileIo(FileDescriptor file) : file_(std::move(file)) {
  struct stat status;
  isRegular_ = fstat(file_.number(), &status) == 0 && S_ISREG(status.st_mode);
  if (!isRegular_) return;
  size_ = static_cast<uint64_t>(status.st_size);
  written_ = status.st_mtim;
  if (size_ > LargestInput) throw std::system_error(EFBIG, std::generic_category());
}

void FileIo::check() const {
  if (cutShort_) throw std::runtime_error("cut short while it was read");
  if (changed_) throw std::runtime_error("changed while it was read");
  if (error_ != 0) throw std::system_error(error_, std::generic_category());
}

// Asked behind a read, it tells that all bytes so far are of one state of the file. The time of the
// inode's change isn't looked at: a file that is moved, or replaced by another, holds what it held.
bool FileIo::isAsItWas() {
  struct stat now;
  if (!isRegular_ || fstat(file_.number(), &now) != 0) return true;
  const auto size = static_cast<uint64_t>(now.st_size);
  cutShort_ |= size < size_;
  changed_ |= size > size_ || now.st_mtim.tv_sec != written_.tv_sec ||
              now.st_mtim.tv_nsec != written_.tv_nsec;
  return !cutShort_ && !changed_;
}

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
  if (!isAsItWas()) return IoFailed;
  *count = static_cast<uint32_t>(got);
  const uint64_t end = position + *count;
  if (count_ && end > reached_) {
    count_->fetch_add(end - reached_, std::memory_order_relaxed);
    reached_ = end;
  }
  return 0;
}

}  // namespace px

#include "host/io/spool_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace px {
namespace {

constexpr size_t kUsualCapacity = 256 * 1024;

[[noreturn]] void fail(int error) {
  throw std::system_error(error, std::generic_category(), "temporary file in TMPDIR or /tmp");
}

}  // namespace

FileDescriptor openTemporaryFile() {
  const char *variable = std::getenv("TMPDIR");
  const std::string directory = variable && *variable ? variable : "/tmp";
  FileDescriptor file(open(directory.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (file.isOpen()) return file;
  // Not every file system has files without names.
  std::string name = directory + "/pxcard-XXXXXX";
  file = FileDescriptor(mkostemp(name.data(), O_CLOEXEC));
  if (!file.isOpen()) fail(errno);
  unlink(name.c_str());
  return file;
}

void SpoolFile::makeRoom(size_t size) {
  spill();
  if (capacity_ >= size) return;
  const size_t capacity = std::max(kUsualCapacity, size);
  buffer_ = std::make_unique_for_overwrite<char[]>(capacity);
  capacity_ = capacity;
}

void SpoolFile::spill() {
  if (held_ == 0) return;
  if (!file_.isOpen()) file_ = openTemporaryFile();
  for (size_t done = 0; done < held_;) {
    const ssize_t written = pwrite(file_.number(), buffer_.get() + done, held_ - done,
                                   static_cast<off_t>(spilled_ + done));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) fail(written < 0 ? errno : ENOSPC);
    done += static_cast<size_t>(written);
  }
  spilled_ += held_;
  held_ = 0;
}

size_t SpoolFile::readAt(uint64_t position, void *to, size_t size) const {
  auto *bytes = static_cast<char *>(to);
  size_t count = 0;
  while (count < size && position + count < spilled_) {
    const size_t wanted =
        static_cast<size_t>(std::min<uint64_t>(size - count, spilled_ - position - count));
    const ssize_t got =
        pread(file_.number(), bytes + count, wanted, static_cast<off_t>(position + count));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) fail(got < 0 ? errno : EIO);
    count += static_cast<size_t>(got);
  }
  if (count < size && position + count < this->size()) {
    const auto from = static_cast<size_t>(position + count - spilled_);
    const size_t rest = std::min(size - count, held_ - from);
    std::memcpy(bytes + count, buffer_.get() + from, rest);
    count += rest;
  }
  return count;
}

int32_t SpoolIo::readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
  if (position >= length_) return 0;
  const auto wanted = static_cast<size_t>(std::min<uint64_t>(size, length_ - position));
  try {
    *count = static_cast<uint32_t>(spool_->readAt(start_ + position, to, wanted));
  } catch (const std::system_error &) {
    failure_ = std::current_exception();
    return IoFailed;
  }
  return 0;
}

}  // namespace px

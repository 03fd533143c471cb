#include "host/io/file_writer.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace px {

void FileWriter::write(std::string_view bytes) {
  while (!bytes.empty()) {
    if (held_ == Capacity) flush();
    const size_t taken = std::min(bytes.size(), Capacity - held_);
    std::memcpy(buffer_.get() + held_, bytes.data(), taken);
    held_ += taken;
    bytes.remove_prefix(taken);
  }
}

void FileWriter::flush() {
  std::string_view rest(buffer_.get(), std::exchange(held_, 0));
  while (!rest.empty()) {
    const ssize_t written = ::write(file_, rest.data(), rest.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
      pollfd ready = {file_, POLLOUT, 0};
      poll(&ready, 1, -1);  // whatever it answers, the write tells what is the matter
      continue;
    }
    if (written < 0) throw WriteError(errno, std::generic_category());
    rest.remove_prefix(static_cast<size_t>(written));
  }
}

}  // namespace px

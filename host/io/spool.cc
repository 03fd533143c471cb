#include "host/io/spool.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "host/io/file_io.h"
#include "host/io/spool_file.h"

namespace px {
namespace {

[[noreturn]] void failInput(int error) { throw std::system_error(error, std::generic_category()); }

[[noreturn]] void failTemporary(int error) {
  throw std::system_error(error, std::generic_category(), "temporary file in TMPDIR or /tmp");
}

void writeAll(int file, const char *bytes, size_t size) {
  while (size > 0) {
    const ssize_t written = write(file, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) failTemporary(errno);
    bytes += written;
    size -= static_cast<size_t>(written);
  }
}

}  // namespace

FileDescriptor spoolInput(int input) {
  FileDescriptor file = openTemporaryFile();
  uint64_t total = 0;
  char buffer[64 * 1024];
  for (;;) {
    const ssize_t got = read(input, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) failInput(errno);
    if (got == 0) return file;
    total += static_cast<uint64_t>(got);
    if (total > LargestInput) failInput(EFBIG);
    writeAll(file.number(), buffer, static_cast<size_t>(got));
  }
}

}  // namespace px

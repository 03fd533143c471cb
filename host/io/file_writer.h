// Buffered writing to an open file, in which no failure goes unseen. A file that doesn't block is
// waited for.

#ifndef PX_HOST_IO_FILE_WRITER_H
#define PX_HOST_IO_FILE_WRITER_H

#include <memory>
#include <string_view>
#include <system_error>

namespace px {

// What a FileWriter throws, with the errno of the write.
struct WriteError : std::system_error {
  using std::system_error::system_error;
};

class FileWriter {
 public:
  // `file` isn't owned. Destruction doesn't write what is still held: call flush before.
  explicit FileWriter(int file) : file_(file) {}

  // Throw WriteError. What was held is dropped then.
  void write(std::string_view bytes);
  void flush();

 private:
  static constexpr size_t Capacity = 64 * 1024;

  int file_;
  size_t held_ = 0;
  std::unique_ptr<char[]> buffer_ = std::make_unique<char[]>(Capacity);
};

}  // namespace px

#endif

// An open file, closed when it goes out of use.

#ifndef PX_HOST_IO_FILE_DESCRIPTOR_H
#define PX_HOST_IO_FILE_DESCRIPTOR_H

#include <unistd.h>

#include <utility>

namespace px {

class FileDescriptor {
 public:
  explicit FileDescriptor(int number = -1) : number_(number) {}
  ~FileDescriptor() {
    if (number_ >= 0) close(number_);
  }
  FileDescriptor(FileDescriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor &operator=(FileDescriptor &&other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  bool isOpen() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  int number_;
};

}  // namespace px

#endif

#include "host/library/input.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "host/io/file_io.h"
#include "host/io/memory_io.h"
#include "host/io/spool.h"
#include "host/library/caller_io.h"
#include "host/library/result.h"

namespace px {
namespace {

class FileInput final : public Input {
 public:
  explicit FileInput(FileDescriptor file) : io_(std::move(file)) {}
  VcardIo *io() override { return &io_; }
  void check() const override { io_.check(); }

 private:
  FileIo io_;
};

class MemoryInput final : public Input {
 public:
  explicit MemoryInput(std::string_view bytes) : io_(bytes) {}
  VcardIo *io() override { return &io_; }
  void check() const override {}

 private:
  MemoryIo io_;
};

class CallerInput final : public Input {
 public:
  CallerInput(VcardIo *io, InUse *use) : io_(io, use) {}
  VcardIo *io() override { return &io_; }
  void check() const override { io_.check(); }

 private:
  CallerIo io_;
};

}  // namespace

std::unique_ptr<Input> openFileInput(const char *path) {
  FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (const int error = errno; !file.isOpen()) throw Failure(PxErrorFile, systemText(error), error);
  const bool seekable = lseek(file.number(), 0, SEEK_CUR) >= 0;
  return std::make_unique<FileInput>(seekable ? std::move(file) : spoolInput(file.number()));
}

std::unique_ptr<Input> openMemoryInput(const void *bytes, uint64_t size) {
  if (size > LargestInput) throw Failure(PxErrorRead, "larger than what can be read");
  return std::make_unique<MemoryInput>(
      std::string_view(static_cast<const char *>(bytes), static_cast<size_t>(size)));
}

std::unique_ptr<Input> openCallerInput(VcardIo *io, InUse *use) {
  return std::make_unique<CallerInput>(io, use);
}

}  // namespace px

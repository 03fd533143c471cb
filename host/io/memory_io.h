// Bytes in memory as input, with what tests need: short reads, either width, a log, failures.

#ifndef PX_HOST_IO_MEMORY_IO_H
#define PX_HOST_IO_MEMORY_IO_H

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "host/io/positioned_io.h"

namespace px {

// The calls that can be logged and can fail: GetInfo, Tell, Seek and Read, of either width.
enum class IoCall { Query, Tell, Seek, Read };

struct MemoryIoOptions {
  uint32_t largestRead = UINT32_MAX;  // bytes that one Read gives at most
  bool hasWideSlots = true;           // Seek64 and Tell64 are there
  int32_t wideAnswer = 0;             // what GetInfo answers to VcardIoInfoWide

  // The call of this kind and number, counted from 1, fails; a Read stores its bytes and count all
  // the same. The calls behind it fail as well when `failOn` is set.
  IoCall failing = IoCall::Read;
  uint32_t failAt = 0;
  bool failOn = false;

  // Takes a line for each call: "query 24", "tell 0", "seek 2048", "read 2048 17" (position and
  // bytes given), "tell64 0", "seek64 2048"; with " failed" behind it where it failed.
  std::vector<std::string> *log = nullptr;
};

// Belongs to who made it; slot Close does nothing.
class MemoryIo final : public PositionedIo<MemoryIo> {
 public:
  // `bytes` aren't copied and outlive the object.
  explicit MemoryIo(std::string_view bytes, const MemoryIoOptions &options = {});

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);
  int32_t read(void *to, uint32_t size, uint32_t *count);
  int32_t seek(uint64_t position, bool wide);
  int32_t tell(uint64_t *position, bool wide);
  int32_t getInfo(uint32_t selector, void *argument);

 private:
  bool fails(IoCall call);
  int32_t note(const char *name, std::initializer_list<uint64_t> values, int32_t result);

  std::string_view bytes_;
  MemoryIoOptions options_;
  uint32_t calls_ = 0;  // of the failing kind
};

}  // namespace px

#endif

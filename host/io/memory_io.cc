#include "host/io/memory_io.h"

#include <algorithm>
#include <cstring>

namespace px {

MemoryIo::MemoryIo(std::string_view bytes, const MemoryIoOptions &options)
    : bytes_(bytes), options_(options) {
  if (!options_.hasWideSlots) {
    Seek64 = nullptr;
    Tell64 = nullptr;
  }
}

int32_t MemoryIo::readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
  if (position >= bytes_.size()) return 0;
  const uint64_t rest = bytes_.size() - position;
  *count = static_cast<uint32_t>(std::min<uint64_t>({size, options_.largestRead, rest}));
  std::memcpy(to, bytes_.data() + position, *count);
  return 0;
}

int32_t MemoryIo::read(void *to, uint32_t size, uint32_t *count) {
  const bool failed = fails(IoCall::Read);
  uint64_t position = 0;
  PositionedIo::tell(&position, false);
  PositionedIo::read(to, size, count);
  if (failed) PositionedIo::seek(position, false);
  return note("read", {position, *count}, failed ? IoFailed : 0);
}

int32_t MemoryIo::seek(uint64_t position, bool wide) {
  const bool failed = fails(IoCall::Seek);
  const int32_t result = failed ? IoFailed : PositionedIo::seek(position, wide);
  return note(wide ? "seek64" : "seek", {position}, result);
}

int32_t MemoryIo::tell(uint64_t *position, bool wide) {
  const bool failed = fails(IoCall::Tell);
  const int32_t result = failed ? IoFailed : PositionedIo::tell(position, wide);
  return note(wide ? "tell64" : "tell", {*position}, result);
}

int32_t MemoryIo::getInfo(uint32_t selector, void * /*argument*/) {
  const bool failed = fails(IoCall::Query);
  const bool known = selector == VcardIoInfoWide && !failed;
  return note("query", {selector}, known ? options_.wideAnswer : IoFailed);
}

bool MemoryIo::fails(IoCall call) {
  if (call != options_.failing) return false;
  ++calls_;
  return options_.failOn ? options_.failAt > 0 && calls_ >= options_.failAt
                         : calls_ == options_.failAt;
}

int32_t MemoryIo::note(const char *name, std::initializer_list<uint64_t> values, int32_t result) {
  if (options_.log) {
    std::string line = name;
    for (uint64_t value : values) line += " " + std::to_string(value);
    if (result != 0) line += " failed";
    options_.log->push_back(std::move(line));
  }
  return result;
}

}  // namespace px

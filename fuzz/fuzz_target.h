// What the fuzz targets share.
//
// An input is a text, as a file would have it, so every card is a seed. What a target has to choose
// beside it, such as the size of reads, comes from the text's last bytes: behind the last END they
// mean nothing to anybody else.

#ifndef PX_FUZZ_FUZZ_TARGET_H
#define PX_FUZZ_FUZZ_TARGET_H

#include <cstdint>
#include <string_view>

#include "host/io/memory_io.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);

// One input. Answers 0; a finding ends the program.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace px::fuzz {

// Says what doesn't hold, and ends the program, unless `good`.
void require(bool good, const char *what);

inline std::string_view textOf(const uint8_t *data, size_t size) {
  return {reinterpret_cast<const char *>(data), size};
}

class Choices {
 public:
  explicit Choices(std::string_view text) : text_(text), at_(text.size()) {}

  // A number below `count`, which is at most 256. When the text is used up it begins again.
  uint32_t below(uint32_t count);
  bool yes() { return below(2) == 1; }

 private:
  std::string_view text_;
  size_t at_;
  uint32_t taken_ = 0;
};

// How an input is read: short reads or whole ones, either width.
MemoryIoOptions chooseReads(Choices *choices);

// Whether `text` is valid UTF-8 without control characters, of which line feeds are let through.
bool isCleanText(std::string_view text);

}  // namespace px::fuzz

#endif

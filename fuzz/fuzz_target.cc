#include "fuzz/fuzz_target.h"

#include <cstdio>
#include <cstdlib>

#include "host/filter/filter_library.h"
#include "host/source/utf8.h"

// The engine calls it first. It watches the filter only when that is there from the beginning.
extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  px::filterLibrary();
  return 0;
}

namespace px::fuzz {

void require(bool good, const char *what) {
  if (good) return;
  std::fprintf(stderr, "what doesn't hold: %s\n", what);
  std::abort();
}

uint32_t Choices::below(uint32_t count) {
  if (text_.empty()) return 0;
  if (at_ == 0) at_ = text_.size();
  // The bytes of plain text are much alike, so their number counts too.
  return (static_cast<uint8_t>(text_[--at_]) + taken_++ / 8) % count;
}

MemoryIoOptions chooseReads(Choices *choices) {
  MemoryIoOptions options;
  constexpr uint32_t sizes[] = {UINT32_MAX, 1, 2, 3, 7, 64, 1000, 4096};
  options.largestRead = sizes[choices->below(8)];
  options.hasWideSlots = choices->yes();
  options.wideAnswer = choices->yes() ? 0 : 1;
  return options;
}

bool isCleanText(std::string_view text) {
  bool cut;
  if (validUtf8Length(text, &cut) != text.size()) return false;
  for (size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if ((byte < 0x20 && byte != '\n') || byte == 0x7F) return false;
    if (byte == 0xC2 && static_cast<unsigned char>(text[at + 1]) < 0xA0) return false;
  }
  return true;
}

}  // namespace px::fuzz

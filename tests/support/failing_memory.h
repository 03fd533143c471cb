// Memory that fails on request, and is counted.
//
// The test program has SYSNativeAlloc and SYSNativeFree of its own, which count and hand on to
// those of libpx_core. It comes first in the search order, so the filter, which is loaded later,
// takes these.

#ifndef PX_TESTS_SUPPORT_FAILING_MEMORY_H
#define PX_TESTS_SUPPORT_FAILING_MEMORY_H

#include <cstdint>

namespace px::test {

// In its lifetime, one at a time, SYSNativeAlloc and new (std::nothrow) are numbered together from
// 1 upward, and the one with the number `failAt` answers null.
class FailingMemory {
 public:
  explicit FailingMemory(uint32_t failAt = 0);
  ~FailingMemory();

  uint32_t allocations() const;  // asked for since it was made
  int32_t handles() const;       // given less freed since it was made
};

}  // namespace px::test

#endif

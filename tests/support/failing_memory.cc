#include "tests/support/failing_memory.h"

#include <dlfcn.h>

#include <atomic>
#include <cstring>
#include <new>

#include "px/core.h"

namespace {

std::atomic<uint32_t> failing;      // number of the allocation that fails
std::atomic<uint32_t> allocations;  // asked for so far
std::atomic<int32_t> handles;

bool failsNow() { return ++allocations == failing; }

// The program is linked with libpx_core, whose routine is the next one of that name.
template <class Routine>
Routine *realRoutine(const char *name) {
  return reinterpret_cast<Routine *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

uintptr_t SYSNativeAlloc(uint64_t size) {
  static const auto real = realRoutine<decltype(SYSNativeAlloc)>("SYSNativeAlloc");
  if (failsNow()) return 0;
  ++handles;
  const uintptr_t handle = real(size);
  // Fresh memory is zeroed by luck only.
  if (handle != 0) std::memset(SYSNativeLock(handle), 0xA5, size);
  return handle;
}

void SYSNativeFree(uintptr_t handle) {
  static const auto real = realRoutine<decltype(SYSNativeFree)>("SYSNativeFree");
  if (handle != 0) --handles;
  real(handle);
}

void *operator new(size_t size, const std::nothrow_t &) noexcept {
  if (failsNow()) return nullptr;
  try {
    return ::operator new(size);
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

namespace px::test {

FailingMemory::FailingMemory(uint32_t failAt) {
  ::allocations = 0;
  ::handles = 0;
  failing = failAt;
}

FailingMemory::~FailingMemory() { failing = 0; }

uint32_t FailingMemory::allocations() const { return ::allocations; }

int32_t FailingMemory::handles() const { return ::handles; }

}  // namespace px::test

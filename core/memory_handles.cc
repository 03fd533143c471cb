#include <cstdint>
#include <cstdlib>

#include "px/core.h"

uintptr_t SYSNativeAlloc(uint64_t size) {
  return reinterpret_cast<uintptr_t>(std::malloc(size != 0 ? size : 1));
}

void *SYSNativeLock(uintptr_t handle) { return reinterpret_cast<void *>(handle); }

void SYSNativeUnlock(uintptr_t) {}

void SYSNativeFree(uintptr_t handle) { std::free(reinterpret_cast<void *>(handle)); }

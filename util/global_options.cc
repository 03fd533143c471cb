// Global options: a small fixed table behind a lock, so that nothing is allocated and a reader
// never sees half a value.

#include <cstdint>
#include <cstring>
#include <mutex>
#include <shared_mutex>

#include "px/util.h"

namespace {

struct Option {
  uint32_t number;
  uint32_t size;
  uint8_t value[UTOptionMaxSize];
};

std::shared_mutex lock;
Option options[UTOptionMaxCount];
uint32_t optionCount = 0;

// The caller holds the lock. Answers null when the option isn't set.
Option *findOption(uint32_t number) {
  for (uint32_t i = 0; i < optionCount; ++i) {
    if (options[i].number == number) return &options[i];
  }
  return nullptr;
}

}  // namespace

int32_t UTGetGlobalOption(uint32_t option, void *result, uint32_t *size) {
  const std::shared_lock guard(lock);
  const Option *found = findOption(option);
  if (found == nullptr || found->size > *size) return -1;
  std::memcpy(result, found->value, found->size);
  *size = found->size;
  return 0;
}

int32_t UTSetGlobalOption(uint32_t option, const void *value, uint32_t size) {
  if (value != nullptr && size > UTOptionMaxSize) return -1;
  const std::unique_lock guard(lock);
  Option *found = findOption(option);
  if (value == nullptr) {
    if (found != nullptr) *found = options[--optionCount];
    return 0;
  }
  if (found == nullptr) {
    if (optionCount == UTOptionMaxCount) return -1;
    found = &options[optionCount++];
    found->number = option;
  }
  std::memcpy(found->value, value, size);
  found->size = size;
  return 0;
}

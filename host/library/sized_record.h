// A record that a caller fills, and that begins with its size: `size` is what the caller's header
// made of it, so an older and a newer one can be told.

#ifndef PX_HOST_LIBRARY_SIZED_RECORD_H
#define PX_HOST_LIBRARY_SIZED_RECORD_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace px {

// Copies `given` to `taken` as far as both sides know it; the rest of `taken` is zero. `first` is
// the size that the record began with. Answers false, with nothing copied, for a size that none
// ever had, and where a newer caller asks for something that isn't known here.
template <class Record>
bool takeRecord(const Record &given, size_t first, Record *taken) {
  constexpr uint64_t kLargest = 4096;  // more is no size but what stood in the memory
  const uint64_t size = given.size;
  if (size < first || size > kLargest || size % alignof(Record) != 0) return false;
  const auto *bytes = reinterpret_cast<const char *>(&given);
  const auto isSet = [](char byte) { return byte != 0; };
  if (size > sizeof given && std::any_of(bytes + sizeof given, bytes + size, isSet)) return false;
  *taken = {};
  std::memcpy(taken, bytes, std::min<size_t>(size, sizeof given));
  return true;
}

}  // namespace px

#endif

// Tables of names, and the search for a name in one of them.

#ifndef PX_VCRD_PARSER_NAME_TABLE_H
#define PX_VCRD_PARSER_NAME_TABLE_H

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "vcrd/input/byte_search.h"
#include "vcrd/parser/token_text.h"

// A lower-case name in a row of 32 bytes, padded with NULs.
struct VcardName {
  char Text[32];
};

// Stands in the tables for names that begin with it. Such a name is told by its beginning and never
// looked up.
inline constexpr std::string_view kExtensionRow = "x-";

// A name as it is looked up: lowered, padded with NULs, in two registers. No name that is known is
// longer; a text that is, is all zeros here, as the empty one, and these are no key of a row.
struct VcardNameKey {
  uint64_t Low = 0;
  uint64_t High = 0;

  bool operator==(const VcardNameKey &) const = default;
};
inline constexpr size_t kLongestName = sizeof(VcardNameKey);

// The key of a text in the form of a key but for the case of its letters.
inline VcardNameKey VcardMakeKey(ByteVector text) {
  const ByteVector isUpper = ByteVector((text - uint8_t{'A'}) < 26);
  using Halves =
      uint64_t __attribute__((vector_size(16)));  // taken apart without a way over memory
  const auto key = std::bit_cast<Halves>(text | (isUpper & 0x20));
  return {key[0], key[1]};
}

inline VcardNameKey VcardKeyOf(VcardTokenText text) {
  if (text.Length > kLongestName) return {};
  return VcardMakeKey(KeepBytes(LoadBytes(text.Begin), text.Length));
}

// A hash table over names, made when the library is compiled: a look-up costs about one comparison
// however many names there are.
template <size_t Rows>
struct VcardNameIndex {
  static constexpr int32_t kNoRow = -1;
  static constexpr size_t kBuckets = 256;  // mostly empty, so chains are short
  static_assert(Rows < kBuckets / 2);

  std::array<VcardNameKey, Rows> Keys;
  std::array<uint8_t, kBuckets> Bucket;  // a row and one, 0 where there is none

  static constexpr size_t BucketOf(VcardNameKey key) {
    return ((key.Low ^ key.High * 3) * 0x9E3779B97F4A7C15U) >> 56;
  }
  static constexpr size_t Next(size_t bucket) { return (bucket + 1) % kBuckets; }

  // Answers the row of the name, whole, or -1.
  constexpr int32_t Find(VcardNameKey key) const {
    for (size_t bucket = BucketOf(key); Bucket[bucket] != 0; bucket = Next(bucket)) {
      const size_t row = Bucket[bucket] - 1U;
      if (Keys[row] == key) return static_cast<int32_t>(row);
    }
    return kNoRow;
  }
};

template <size_t Rows>
consteval VcardNameIndex<Rows> VcardMakeNameIndex(const std::array<VcardName, Rows> &names) {
  using Index = VcardNameIndex<Rows>;
  Index index = {};
  for (size_t row = 0; row < Rows; ++row) {
    const std::string_view name = names[row].Text;
    if (name == kExtensionRow) continue;
    std::array<char, kLongestName> padded{};
    for (size_t i = 0; i < name.size(); ++i) padded[i] = name[i];
    const auto key = std::bit_cast<VcardNameKey>(padded);
    if (index.Find(key) != Index::kNoRow) std::abort();  // a name stands twice
    index.Keys[row] = key;
    size_t bucket = Index::BucketOf(key);
    while (index.Bucket[bucket] != 0) bucket = Index::Next(bucket);
    index.Bucket[bucket] = static_cast<uint8_t>(row + 1);
  }
  return index;
}

#endif

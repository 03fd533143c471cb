// Tables of names, and the search for a name in one of them.

#ifndef PX_VCRD_PARSER_NAME_TABLE_H
#define PX_VCRD_PARSER_NAME_TABLE_H

#include <array>
#include <cstdint>
#include <string_view>

#include "vcrd/frame/text.h"

// A lower-case name in a row of 32 bytes, padded with NULs.
struct VcardName {
  char Text[32];
};

// Stands in the tables for names that begin with it. Such a name is told by its beginning and never
// looked up.
inline constexpr std::string_view kExtensionRow = "x-";

// A text in the form of the tables' rows, to be looked up: lowered, padded with NULs. A text that
// is longer than any row is empty here, and no row is empty.
struct VcardFoldedName {
  // From a text, so that the look-ups take one as it is.
  VcardFoldedName(const char *text) {  // NOLINT(google-explicit-constructor)
    for (; text[Length] != '\0'; ++Length) {
      if (Length == sizeof Name.Text - 1) {
        Length = 0;
        Name = {};
        return;
      }
      Name.Text[Length] = VcardLowerLetter(text[Length]);
    }
  }

  VcardName Name = {};
  size_t Length = 0;
};

// A hash table over the rows of a table of names, made when the library is compiled: a look-up
// costs about one comparison however many rows there are.
template <size_t Rows>
struct VcardNameIndex {
  static constexpr int16_t kNoRow = -1;
  static constexpr uint32_t kBuckets = Rows < 16 ? 64 : 256;  // mostly empty, so chains are short

  std::array<VcardName, Rows> Names;
  std::array<int16_t, kBuckets> Bucket;

  // Of the length and three letters, which tell the names apart well enough.
  static constexpr uint32_t Hash(const VcardName &name, size_t length) {
    const auto letter = [&name](size_t i) { return static_cast<uint8_t>(name.Text[i]); };
    return static_cast<uint32_t>(length) * 3U + letter(0) * 7U + letter(length / 2) * 31U +
           letter(length - 1) * 5U;
  }

  // Answers the row of the name, whole, or -1.
  int32_t Find(const VcardFoldedName &wanted) const {
    if (wanted.Length == 0) return kNoRow;
    for (uint32_t bucket = Hash(wanted.Name, wanted.Length);; ++bucket) {
      const int16_t row = Bucket[bucket % kBuckets];
      if (row == kNoRow) return kNoRow;
      const VcardName &name = Names[static_cast<size_t>(row)];
      if (std::memcmp(name.Text, wanted.Name.Text, sizeof name.Text) == 0) return row;
    }
  }
};

template <size_t Rows>
consteval VcardNameIndex<Rows> VcardMakeNameIndex(const std::array<VcardName, Rows> &names) {
  using Index = VcardNameIndex<Rows>;
  Index index = {names, {}};
  index.Bucket.fill(Index::kNoRow);
  for (size_t row = 0; row < Rows; ++row) {
    const std::string_view name = names[row].Text;
    if (name == kExtensionRow) continue;
    uint32_t bucket = Index::Hash(names[row], name.size());
    while (index.Bucket[bucket % Index::kBuckets] != Index::kNoRow) ++bucket;
    index.Bucket[bucket % Index::kBuckets] = static_cast<int16_t>(row);
  }
  return index;
}

#endif

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

// A hash table over the rows of a table of names, made when the library is compiled: a look-up
// costs about one comparison however many rows there are.
template <size_t Rows>
class VcardNameIndex {
 public:
  explicit consteval VcardNameIndex(const std::array<VcardName, Rows> &names) : Names(names) {
    Bucket.fill(kNoRow);
    for (size_t row = 0; row < Rows; ++row) {
      const std::string_view name = names[row].Text;
      if (name == kExtensionRow) continue;
      uint32_t bucket = Hash(name.data(), name.size());
      while (Bucket[bucket % kBuckets] != kNoRow) ++bucket;
      Bucket[bucket % kBuckets] = static_cast<int16_t>(row);
    }
  }

  // Answers the row of `text` in any case of letters, whole, or -1.
  int32_t Find(const char *text) const {
    size_t length = 0;
    for (; text[length] != '\0'; ++length) {
      if (length == sizeof(VcardName) - 1) return kNoRow;  // longer than any name
    }
    if (length == 0) return kNoRow;
    for (uint32_t bucket = Hash(text, length);; ++bucket) {
      const int16_t row = Bucket[bucket % kBuckets];
      if (row == kNoRow || IsName(Names[static_cast<size_t>(row)], text, length)) return row;
    }
  }

 private:
  static constexpr int16_t kNoRow = -1;
  static constexpr uint32_t kBuckets = Rows < 16 ? 64 : 256;  // mostly empty, so chains are short

  // Of the length and three letters, which tell the names apart well enough.
  static constexpr uint32_t Hash(const char *text, size_t length) {
    const auto letter = [text](size_t i) {
      return static_cast<uint32_t>(static_cast<uint8_t>(VcardLowerLetter(text[i])));
    };
    return static_cast<uint32_t>(length) * 3 + letter(0) * 7 + letter(length / 2) * 31 +
           letter(length - 1) * 5;
  }

  static bool IsName(const VcardName &name, const char *text, size_t length) {
    for (size_t i = 0; i < length; ++i) {
      if (VcardLowerLetter(text[i]) != name.Text[i]) return false;
    }
    return name.Text[length] == '\0';
  }

  std::array<VcardName, Rows> Names;
  std::array<int16_t, kBuckets> Bucket{};
};

#endif

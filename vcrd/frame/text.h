// Byte strings in fields of 256 bytes: at most 255 characters and a NUL.

#ifndef PX_VCRD_FRAME_TEXT_H
#define PX_VCRD_FRAME_TEXT_H

#include <cstddef>
#include <cstdint>
#include <cstring>

inline constexpr size_t kTextSize = 256;
using VcardText = char[kTextSize];

// Copies `from`, cut at 255 characters, NUL included. The texts are short: a plain loop is the
// fastest.
inline void VcardCopyText(VcardText &to, const char *from) {
  size_t i = 0;
  for (; i < kTextSize - 1 && from[i] != '\0'; ++i) to[i] = from[i];
  to[i] = '\0';
}

// Only A to Z count as letters with a case; bytes above 127 belong to a character set that isn't
// looked at here.
constexpr char VcardLowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// Copies `from` lowered.
inline void VcardLowerText(VcardText &to, const char *from) {
  size_t i = 0;
  for (; i < kTextSize - 1 && from[i] != '\0'; ++i) to[i] = VcardLowerLetter(from[i]);
  to[i] = '\0';
}

inline bool VcardSameText(const char *a, const char *b) { return std::strcmp(a, b) == 0; }

#endif

// UTF-8: what is valid, and what of it is safe to show.

#ifndef PX_HOST_SOURCE_UTF8_H
#define PX_HOST_SOURCE_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace px {

// How many bytes the character has that begins with `byte`; 0 when none does.
inline size_t utf8Length(uint8_t byte) {
  if (byte < 0x80) return 1;
  if (byte < 0xC2) return 0;
  if (byte < 0xE0) return 2;
  if (byte < 0xF0) return 3;
  return byte < 0xF5 ? 4 : 0;
}

// Whether `byte` can follow `first` as the second byte of a character: this keeps out overlong
// forms, surrogates and numbers above U+10FFFF.
inline bool canBeSecondUtf8(uint8_t first, uint8_t byte) {
  const uint8_t low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const uint8_t high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  return low <= byte && byte <= high;
}

// The length of the valid characters other than NUL at the head of `bytes`. `*cut` tells that what
// follows them reaches the end of `bytes` and may be the beginning of one more.
size_t validUtf8Length(std::string_view bytes, bool *cut);

// Whether all of `bytes` are that.
bool isValidUtf8(std::string_view bytes);

inline bool isPrintableAscii(char byte) { return ' ' <= byte && byte <= '~'; }

// How many bytes at the head of `text` are that.
size_t printableAsciiLength(std::string_view text);

// Stores a character in UTF-8, U+FFFD for a number that is no character, in up to four bytes.
// Answers the end of what was stored.
char *storeUtf8(char32_t character, char *to);

// Appends the same.
void appendUtf8(char32_t character, std::string *utf8);

// Decodes the character at the head of `utf8`, which is valid, and stores its length in bytes.
char32_t firstCharacter(std::string_view utf8, size_t *length);

// Whether a character drives a terminal instead of showing: control characters, tab and newline
// included, line separators, and those that override the direction of writing.
inline bool drivesTerminal(char32_t character) {
  return character < 0x20 || (0x7F <= character && character <= 0x9F) ||
         (0x2028 <= character && character <= 0x202E) ||
         (0x2066 <= character && character <= 0x2069);
}

// Appends `utf8`, which is valid UTF-8, with U+FFFD in place of each character that does.
void appendPrintable(std::string_view utf8, std::string *to);

}  // namespace px

#endif

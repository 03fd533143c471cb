// UTF-8: what is valid, and what of it is safe to show.

#ifndef PX_HOST_SOURCE_UTF8_H
#define PX_HOST_SOURCE_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace px {

// How many bytes the character has that begins with `byte`; 0 when none does.
size_t utf8Length(uint8_t byte);

// Whether `byte` can follow `first` as the second byte of a character: this keeps out overlong
// forms, surrogates and numbers above U+10FFFF.
bool canBeSecondUtf8(uint8_t first, uint8_t byte);

// The length of the valid characters other than NUL at the head of `bytes`. `*cut` tells that what
// follows them reaches the end of `bytes` and may be the beginning of one more.
size_t validUtf8Length(std::string_view bytes, bool *cut);

inline bool isPrintableAscii(char byte) { return ' ' <= byte && byte <= '~'; }

// How many bytes at the head of `text` are that.
size_t printableAsciiLength(std::string_view text);

// Appends a character in UTF-8; U+FFFD for a number that is no character.
void appendUtf8(char32_t character, std::string *utf8);

// Appends `utf8`, which is valid UTF-8, with U+FFFD in place of each character that drives a
// terminal instead of showing: control characters, tab and newline included, line separators, and
// those that override the direction of writing.
void appendPrintable(std::string_view utf8, std::string *to);

// How many columns valid UTF-8 takes on a terminal, each character counted as one.
uint32_t columnCount(std::string_view utf8);

}  // namespace px

#endif

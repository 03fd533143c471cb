#include "host/writers/wrapped_lines.h"

#include <utf8proc.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "host/source/byte_search.h"
#include "host/source/utf8.h"

namespace px {
namespace {

constexpr size_t kMaxHeld = 8192;
constexpr size_t kMaxLine = 4096;  // bytes: characters without a width would make it endless
constexpr size_t kMaxPiece = 256;  // bytes that are copied before they are looked at
constexpr size_t kNone = SIZE_MAX;
constexpr std::string_view kReplacement = "\uFFFD";

struct Character {
  char32_t code;
  size_t length;  // in bytes
  uint32_t width;
};

uint32_t widthOf(char32_t code) {
  return static_cast<uint32_t>(utf8proc_charwidth(static_cast<utf8proc_int32_t>(code)));
}

// Answers the character at the start of `utf8`.
Character characterAt(std::string_view utf8) {
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t *>(utf8.data()),
                                       static_cast<utf8proc_ssize_t>(utf8.size()), &code);
  if (length <= 0) return {0xFFFD, 1, 1};
  return {static_cast<char32_t>(code), static_cast<size_t>(length),
          widthOf(static_cast<char32_t>(code))};
}

// Kana and ideographs are written without blanks: a line can break before each.
bool canBeginLine(char32_t code) {
  return (0x3041 <= code && code <= 0x9FFF) || (0xF900 <= code && code <= 0xFAFF) ||
         (0x20000 <= code && code <= 0x3FFFF);
}

}  // namespace

uint32_t displayWidth(std::string_view utf8) {
  uint32_t width = 0;
  for (;;) {
    const size_t plain = printableAsciiLength(utf8);
    width += static_cast<uint32_t>(plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) return width;
    const Character character = characterAt(utf8);
    width += character.width;
    utf8.remove_prefix(character.length);
  }
}

size_t lengthWithin(std::string_view utf8, uint32_t columns) {
  for (size_t end = 0;;) {
    const size_t plain = printableAsciiLength(utf8.substr(end, columns));
    end += plain;
    columns -= static_cast<uint32_t>(plain);
    if (end == utf8.size() || isPrintableAscii(utf8[end])) return end;
    const Character character = characterAt(utf8.substr(end));
    if (character.width > columns) return end;
    columns -= character.width;
    end += character.length;
  }
}

// The buffer.

// Answers where so many bytes can be added, with room behind them for a step of a search.
inline char *WrappedLines::room(size_t size) {
  const size_t needed = size_ + size + sizeof(ByteVector);
  if (text_.size() < needed) text_.resize(needed + needed / 2);
  return text_.data() + size_;
}

inline void WrappedLines::append(std::string_view text) {
  std::memcpy(room(text.size()), text.data(), text.size());
  size_ += text.size();
}

// Puts so many of `sign` in place of so many bytes.
inline void WrappedLines::replace(size_t at, size_t size, size_t newSize, char sign) {
  room(newSize);
  char *const to = text_.data() + at;
  if (at + size < size_) std::memmove(to + newSize, to + size, size_ - at - size);
  std::memset(to, sign, newSize);
  size_ += newSize - size;
}

// Text.

void WrappedLines::write(std::string_view utf8) {
  while (!utf8.empty()) {
    const size_t room = std::min<size_t>(width_ - column_, kMaxPiece);
    if (!isPrintableAscii(utf8.front())) {
      utf8.remove_prefix(writeCharacter(utf8));
    } else if (room > 0) {
      utf8.remove_prefix(addAscii(utf8.substr(0, room)));
    } else if (utf8.front() == ' ') {
      // The end of a full line is a place to break. Nothing is broken before text follows.
      breakHere();
      utf8.remove_prefix(1);
    } else {
      wrap();
    }
  }
}

// Adds the printable ASCII at the head of `text`, all of which has room in the line. Answers its
// length. Sixteen bytes at a time are copied by way of a register and looked at there: reading what
// was written a moment ago, in other pieces, would wait for the cache.
size_t WrappedLines::addAscii(std::string_view text) {
  constexpr size_t step = sizeof(ByteVector);
  char *const to = room(text.size());
  size_t length = 0;
  size_t behindBlank = 0;
  for (uint32_t others = 0; others == 0;) {
    const size_t left = text.size() - length;
    const ByteVector bytes =
        left < step ? shortVector(text.data() + length, left) : vectorAt(text.data() + length);
    std::memcpy(to + length, &bytes, step);
    others = bitsOf(ByteVector(bytes - ' ' > '~' - ' '));
    if (left < step) others |= 1U << left;
    const uint32_t before = (others & -others) - 1;  // bits of the bytes that stand before those
    const uint32_t blanks = bitsOf(isByte(bytes, ' ')) & before;
    if (blanks != 0) behindBlank = length + static_cast<size_t>(std::bit_width(blanks));
    length += others == 0 ? step : static_cast<size_t>(std::countr_zero(others));
  }
  // No line is broken at the blanks that it begins with.
  const size_t first = hasText_ ? 0 : std::min(text.find_first_not_of(' '), length);
  if (first < behindBlank) {
    break_ = size_ + behindBlank;
    breakColumn_ = column_ + static_cast<uint32_t>(behindBlank);
  }
  hasText_ = hasText_ || first < length;
  open_ = true;
  size_ += length;
  column_ += static_cast<uint32_t>(length);
  if (lineSize() > kMaxLine) spill();
  return length;
}

// Adds the character at the head of `utf8`; answers its length.
size_t WrappedLines::writeCharacter(std::string_view utf8) {
  size_t length;
  const char32_t code = firstCharacter(utf8, &length);
  const bool drives = drivesTerminal(code);
  const auto width = drives ? 1 : widthOf(code);
  if (hasText_ && canBeginLine(code)) breakHere();
  if (width > width_ - column_) wrap();
  append(drives ? kReplacement : utf8.substr(0, length));
  column_ += width;
  open_ = hasText_ = true;
  if (lineSize() > kMaxLine) spill();
  return length;
}

void WrappedLines::breakHere() {
  break_ = size_;
  breakColumn_ = column_;
}

void WrappedLines::addSequence(std::string_view sequence) { append(sequence); }

void WrappedLines::padTo(uint32_t column) {
  if (column <= column_) return;
  replace(size_, 0, column - column_, ' ');
  column_ = column;
  open_ = true;
  hasText_ = false;
  break_ = kNone;
}

// Breaks the line at its last blank, or here when there is none that makes the rest shorter.
void WrappedLines::wrap() {
  const bool atBlank = break_ != kNone && breakColumn_ > indent_;
  const uint32_t restColumns = atBlank ? column_ - breakColumn_ : 0;
  column_ -= restColumns;
  giveLine(atBlank ? break_ : size_);
  replace(lineStart_, 0, indent_, ' ');
  column_ = indent_ + restColumns;
  open_ = true;
  hasText_ = lineSize() > indent_;
}

// Ends the line at `end`, without the blanks before it. What stands behind begins the next one.
void WrappedLines::giveLine(size_t end) {
  size_t shown = end;
  while (shown > lineStart_ && text_[shown - 1] == ' ') --shown;
  widest_ = std::max(widest_, column_ - static_cast<uint32_t>(end - shown));
  replace(shown, end - shown, 1, '\n');
  beginLine(shown + 1);
}

void WrappedLines::beginLine(size_t start) {
  lineStart_ = start;
  break_ = kNone;
  if (lineStart_ >= kMaxHeld) flush();
}

// Gives up what the line could still be broken at.
void WrappedLines::spill() { beginLine(size_); }

void WrappedLines::endLine() {
  if (!open_) return;
  giveLine(size_);
  column_ = 0;
  open_ = hasText_ = false;
}

void WrappedLines::skipLine() {
  endLine();
  replace(lineStart_, 0, 1, '\n');
  beginLine(lineStart_ + 1);
}

void WrappedLines::flush() {
  if (lineStart_ > 0) sink_(std::string_view(text_.data(), lineStart_));
  replace(0, lineStart_, 0, ' ');
  lineStart_ = 0;
}

uint32_t WrappedLines::takeWidest() { return std::exchange(widest_, 0); }

}  // namespace px

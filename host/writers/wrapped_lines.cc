#include "host/writers/wrapped_lines.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/source/utf8.h"

namespace px {
namespace {

constexpr size_t kMaxHeld = 8192;
constexpr size_t kMaxLine = 4096;  // bytes: characters without a width would make it endless
constexpr size_t kNone = std::string::npos;
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

// The head of a text, and how many columns it takes.
struct Stretch {
  size_t length;
  size_t columns;
};

// How many bytes so many characters have at the head of a longer text.
size_t lengthOf(std::string_view utf8, size_t characters) {
  size_t end = 0;
  for (++characters;; ++end) {
    if ((utf8[end] & 0xC0) != 0x80 && --characters == 0) return end;
  }
}

Stretch asciiStretch(std::string_view utf8) {
  const size_t plain = printableAsciiLength(utf8);
  return {plain, plain};
}

// Of characters that take one column each, and before which no line can begin but behind a blank.
Stretch singleColumnStretch(std::string_view utf8) {
  Stretch stretch = {0, 0};
  for (;;) {
    const size_t plain = printableAsciiLength(utf8.substr(stretch.length));
    stretch.length += plain;
    stretch.columns += plain;
    if (stretch.length == utf8.size()) return stretch;
    do {
      size_t length;
      const char32_t code = firstCharacter(utf8.substr(stretch.length), &length);
      if (drivesTerminal(code) || canBeginLine(code) || widthOf(code) != 1) return stretch;
      stretch.length += length;
      ++stretch.columns;
    } while (stretch.length < utf8.size() && !isPrintableAscii(utf8[stretch.length]));
  }
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
  size_t end = 0;
  while (end < utf8.size()) {
    const Character character = characterAt(utf8.substr(end));
    if (character.width > columns) break;
    columns -= character.width;
    end += character.length;
  }
  return end;
}

// Text is added in stretches of characters that take a column each; other ones come one by one. A
// line that can grow too long for kMaxLine is given up piece by piece, in ASCII.
void WrappedLines::write(std::string_view utf8) {
  while (!utf8.empty()) {
    const bool inAscii = lineSize() + utf8.size() > kMaxLine;
    const Stretch stretch = inAscii ? asciiStretch(utf8) : singleColumnStretch(utf8);
    writeStretch(utf8.substr(0, stretch.length), stretch.columns);
    utf8.remove_prefix(stretch.length);
    if (!utf8.empty()) utf8.remove_prefix(writeCharacter(utf8));
  }
}

void WrappedLines::writeStretch(std::string_view text, size_t columns) {
  while (!text.empty()) {
    const size_t room = std::min<size_t>(width_ - column_, kMaxLine);
    if (columns <= room) return add(text, columns);
    if (room > 0) {
      const size_t length = columns == text.size() ? room : lengthOf(text, room);
      add(text.substr(0, length), room);
      text.remove_prefix(length);
      columns -= room;
    } else if (text[0] == ' ') {
      // The end of a full line is a place to break. Nothing is broken before text follows.
      breakHere();
      text.remove_prefix(1);
      --columns;
    } else {
      wrap();
    }
  }
}

// Adds the character at the head of `utf8`; answers its length.
size_t WrappedLines::writeCharacter(std::string_view utf8) {
  size_t length;
  const char32_t code = firstCharacter(utf8, &length);
  const std::string_view shown = drivesTerminal(code) ? kReplacement : utf8.substr(0, length);
  const auto width = drivesTerminal(code) ? 1 : widthOf(code);
  if (hasText_ && canBeginLine(code)) breakHere();
  if (width > width_ - column_) wrap();
  text_ += shown;
  column_ += width;
  open_ = hasText_ = true;
  if (lineSize() > kMaxLine) spill();
  return length;
}

// Adds a stretch for which there is room.
void WrappedLines::add(std::string_view text, size_t columns) {
  const size_t first = hasText_ ? 0 : text.find_first_not_of(' ');
  if (first != kNone) {
    if (const void *blank = memrchr(text.data() + first, ' ', text.size() - first)) {
      const auto end = static_cast<size_t>(static_cast<const char *>(blank) + 1 - text.data());
      const size_t behind =
          columns == text.size() ? text.size() - end : columnCount(text.substr(end));
      break_ = text_.size() + end;
      breakColumn_ = column_ + static_cast<uint32_t>(columns - behind);
    }
    hasText_ = true;
  }
  open_ = true;
  text_ += text;
  column_ += static_cast<uint32_t>(columns);
  if (lineSize() > kMaxLine) spill();
}

void WrappedLines::breakHere() {
  break_ = text_.size();
  breakColumn_ = column_;
}

void WrappedLines::addSequence(std::string_view sequence) { text_ += sequence; }

void WrappedLines::padTo(uint32_t column) {
  if (column <= column_) return;
  text_.append(column - column_, ' ');
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
  giveLine(atBlank ? break_ : text_.size());
  text_.insert(lineStart_, indent_, ' ');
  column_ = indent_ + restColumns;
  open_ = true;
  hasText_ = lineSize() > indent_;
}

// Ends the line at `end`, without the blanks before it. What stands behind begins the next one.
void WrappedLines::giveLine(size_t end) {
  size_t shown = end;
  while (shown > lineStart_ && text_[shown - 1] == ' ') --shown;
  widest_ = std::max(widest_, column_ - static_cast<uint32_t>(end - shown));
  text_.replace(shown, end - shown, 1, '\n');
  beginLine(shown + 1);
}

void WrappedLines::beginLine(size_t start) {
  lineStart_ = start;
  break_ = kNone;
  if (lineStart_ >= kMaxHeld) flush();
}

// Gives up what the line could still be broken at.
void WrappedLines::spill() { beginLine(text_.size()); }

void WrappedLines::endLine() {
  if (!open_) return;
  giveLine(text_.size());
  column_ = 0;
  open_ = hasText_ = false;
}

void WrappedLines::skipLine() {
  endLine();
  text_.insert(lineStart_, 1, '\n');
  beginLine(lineStart_ + 1);
}

void WrappedLines::flush() {
  if (lineStart_ > 0) sink_(std::string_view(text_).substr(0, lineStart_));
  text_.erase(0, lineStart_);
  lineStart_ = 0;
}

uint32_t WrappedLines::takeWidest() { return std::exchange(widest_, 0); }

}  // namespace px

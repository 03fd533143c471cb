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

struct Character {
  char32_t code;
  size_t length;  // in bytes
  uint32_t width;
};

// Answers the character at the start of `utf8`.
Character characterAt(std::string_view utf8) {
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t *>(utf8.data()),
                                       static_cast<utf8proc_ssize_t>(utf8.size()), &code);
  if (length <= 0) return {0xFFFD, 1, 1};
  return {static_cast<char32_t>(code), static_cast<size_t>(length),
          static_cast<uint32_t>(utf8proc_charwidth(code))};
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
  size_t end = 0;
  while (end < utf8.size()) {
    const Character character = characterAt(utf8.substr(end));
    if (character.width > columns) break;
    columns -= character.width;
    end += character.length;
  }
  return end;
}

void WrappedLines::write(std::string_view utf8) {
  for (;;) {
    const size_t plain = printableAsciiLength(utf8);
    writePlain(utf8.substr(0, plain));
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    const auto next = std::find_if(utf8.begin(), utf8.end(), isPrintableAscii);
    const auto other = static_cast<size_t>(next - utf8.begin());
    printable_.clear();
    appendPrintable(utf8.substr(0, other), &printable_);
    writeOther(printable_);
    utf8.remove_prefix(other);
  }
}

void WrappedLines::writePlain(std::string_view text) {
  while (!text.empty()) {
    const size_t length = std::min<size_t>({text.size(), width_ - column_, kMaxLine});
    if (length > 0) {
      add(text.substr(0, length));
      text.remove_prefix(length);
    } else if (text[0] == ' ') {
      // The end of a full line is a place to break. Nothing is broken before text follows.
      breakHere();
      text.remove_prefix(1);
    } else {
      wrap();
    }
  }
}

void WrappedLines::writeOther(std::string_view utf8) {
  while (!utf8.empty()) {
    const Character character = characterAt(utf8);
    if (hasText_ && canBeginLine(character.code)) breakHere();
    if (character.width > width_ - column_) wrap();
    text_.append(utf8, 0, character.length);
    column_ += character.width;
    open_ = hasText_ = true;
    if (lineSize() > kMaxLine) spill();
    utf8.remove_prefix(character.length);
  }
}

// Adds plain text for which there is room.
void WrappedLines::add(std::string_view text) {
  const size_t first = hasText_ ? 0 : text.find_first_not_of(' ');
  if (first != kNone) {
    if (const void *blank = memrchr(text.data() + first, ' ', text.size() - first)) {
      const auto end = static_cast<size_t>(static_cast<const char *>(blank) + 1 - text.data());
      break_ = text_.size() + end;
      breakColumn_ = column_ + static_cast<uint32_t>(end);
    }
    hasText_ = true;
  }
  open_ = true;
  text_ += text;
  column_ += static_cast<uint32_t>(text.size());
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
  const uint32_t indent = std::min(indent_, width_ - width_ / 4);
  const bool atBlank = break_ != kNone && breakColumn_ > indent;
  const uint32_t restColumns = atBlank ? column_ - breakColumn_ : 0;
  column_ -= restColumns;
  giveLine(atBlank ? break_ : text_.size());
  text_.insert(lineStart_, indent, ' ');
  column_ = indent + restColumns;
  open_ = true;
  hasText_ = lineSize() > indent;
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

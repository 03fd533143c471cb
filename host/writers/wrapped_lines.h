// Text in lines and columns: wrapped to a width, safe on a terminal, given out in pieces of bounded
// size.
//
// A line that grows too wide is broken at its last blank or before an ideograph, a word that is
// wider than the room itself at the width; what stands behind the break begins in the indent
// column. The line is held until then, and no more than that.

#ifndef PX_HOST_WRITERS_WRAPPED_LINES_H
#define PX_HOST_WRITERS_WRAPPED_LINES_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "host/writers/text_sink.h"

namespace px {

// How many columns printable UTF-8 takes on a terminal.
uint32_t displayWidth(std::string_view utf8);

// How many bytes of printable UTF-8 fit in so many columns.
size_t lengthWithin(std::string_view utf8, uint32_t columns);

class WrappedLines {
 public:
  // `width` in columns, at least a few dozen.
  WrappedLines(uint32_t width, TextSink sink) : width_(width), sink_(std::move(sink)) {}

  // Adds valid UTF-8 to the line, cut between characters. A character that drives a terminal
  // becomes U+FFFD.
  void write(std::string_view utf8);

  // Adds an escape sequence, which takes no column.
  void addSequence(std::string_view sequence);

  // Adds blanks up to the column, counted from 0; none when the line is there already.
  void padTo(uint32_t column);

  // Where the rest of a broken line begins: well within the width.
  void setIndent(uint32_t column) { indent_ = column; }

  // Ends the line, unless nothing stands in it.
  void endLine();

  // Ends the line and adds an empty one, even at the top.
  void skipLine();

  // Gives all that was written to the sink.
  void flush();

  uint32_t column() const { return column_; }

  // Answers the width of the widest line since the last call.
  uint32_t takeWidest();

 private:
  size_t addAscii(std::string_view text);
  size_t writeCharacter(std::string_view utf8);
  void breakHere();
  void wrap();
  void giveLine(size_t end);
  void beginLine(size_t start);
  size_t lineSize() const { return size_ - lineStart_; }
  void spill();
  char *room(size_t size);
  void append(std::string_view text);
  void replace(size_t at, size_t size, size_t newSize, char sign);

  const uint32_t width_;
  TextSink sink_;
  std::vector<char> text_;  // its first size_ bytes: lines that are whole, and
  size_t lineStart_ = 0;    // from here on, what can still be broken of the open one
  size_t size_ = 0;
  uint32_t indent_ = 0;
  uint32_t column_ = 0;
  uint32_t widest_ = 0;
  bool open_ = false;         // something stands in the line, if only blanks
  bool hasText_ = false;      // other than padding and blanks: the next blank is a place to break
  size_t break_ = SIZE_MAX;   // in text_, where the line can break last
  uint32_t breakColumn_ = 0;  // likewise
};

}  // namespace px

#endif

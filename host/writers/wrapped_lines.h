// Text in lines and columns: wrapped to a width, safe on a terminal, given out in pieces of bounded
// size.
//
// A line that grows too wide is broken at its last blank, a word that is wider than the room itself
// at the width; what stands behind the break begins in the indent column. The line is held until
// then, and no more than that.

#ifndef PX_HOST_WRITERS_WRAPPED_LINES_H
#define PX_HOST_WRITERS_WRAPPED_LINES_H

#include <cstdint>
#include <string>
#include <string_view>

#include "host/line_writer.h"

namespace px {

// How many columns valid UTF-8 takes on a terminal.
uint32_t displayWidth(std::string_view utf8);

class WrappedLines {
 public:
  static constexpr uint32_t Endless = 0;  // a width: lines aren't wrapped

  // `width` in columns.
  WrappedLines(uint32_t width, TextSink sink);

  // Adds valid UTF-8 to the line, cut between characters. A character that drives a terminal
  // becomes U+FFFD.
  void write(std::string_view utf8);

  // Adds an escape sequence, which takes no column.
  void addSequence(std::string_view sequence);

  // Adds blanks up to the column, counted from 0; none when the line is there already.
  void padTo(uint32_t column);

  // Where the rest of a broken line begins. Has to leave some room before the width.
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
  void writePrintable(std::string_view utf8);
  void wrap();
  void spill();
  void giveOut();

  const uint32_t width_;
  TextSink sink_;
  std::string held_;  // lines that are whole
  std::string line_;  // what can still be broken of the line
  std::string scratch_;
  uint32_t indent_ = 0;
  uint32_t column_ = 0;
  uint32_t widest_ = 0;
  size_t textFrom_ = 0;       // in line_: no blank before it is a place to break
  size_t break_ = 0;          // in line_, behind the last blank to break at; 0: none
  uint32_t breakColumn_ = 0;  // likewise
};

}  // namespace px

#endif

// Text in lines and columns, given out in pieces of bounded size.

#ifndef PX_HOST_WRITERS_LINE_WRITER_H
#define PX_HOST_WRITERS_LINE_WRITER_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace px {

// Takes a piece of text, and may throw when it couldn't be written: what called the writer passes
// that on.
using TextSink = std::function<void(std::string_view text)>;

class LineWriter {
 public:
  explicit LineWriter(TextSink sink) : sink_(std::move(sink)) {}

  // Adds valid UTF-8 without line ends to the line.
  void write(std::string_view utf8);

  // Adds blanks up to the column, counted from 0; none when the line is there already.
  void padTo(uint32_t column);

  // Ends the line, unless it is empty.
  void endLine();

  // Ends the line and adds an empty one, even at the top.
  void skipLine();

  // Gives all that was written to the sink.
  void flush();

  uint32_t column() const { return column_; }

 private:
  TextSink sink_;
  std::string held_;
  uint32_t column_ = 0;
};

}  // namespace px

#endif

// The content lines of a card: heads, and where values begin.
//
// A line is GROUP.NAME;PARAMETER;PARAMETER:VALUE. It goes on behind a line end that a blank or a
// tab follows, blank lines in between passed over; what becomes of that blank is told by FoldRule,
// what is no fold by line_breaks.h. Only the head is read here; see value_bytes.h for the value.
//
// Between quotes a colon belongs to the head. Where they leave no colon for the line, because one
// isn't closed or stands in the value, the colon counts that comes first behind the parameter's
// open quote, else the first of the line.

#ifndef PX_HOST_SOURCE_CONTENT_LINES_H
#define PX_HOST_SOURCE_CONTENT_LINES_H

#include <string>
#include <string_view>
#include <vector>

#include "host/source/byte_source.h"

namespace px {

// Version 2.1 folds where a blank stands, which belongs to the text; the later ones put one in.
enum class FoldRule { KeepsBlank, DropsBlank };

struct HeadParameter {
  std::string_view name;   // empty: a bare parameter
  std::string_view value;  // as it stands, quotes included
};

// Appends the parameters of the text behind a name and its semicolon. Answers whether all of them
// were taken: no more than `most` are. A quote that isn't closed is a character like any other.
bool splitParameters(std::string_view text, size_t most, std::vector<HeadParameter> *parameters);

struct ContentLine {
  Place start;  // of the line's first byte
  Place value;  // of the value's first byte
  Place end;    // of a line without a colon: of its line end
  bool colon = false;
  bool cut = false;        // parameters are too long, or too many, to be kept whole
  std::string_view head;   // what stands before the colon
  std::string_view group;  // "item1"; without its period
  std::string_view name;
  std::string_view parameters;  // behind the name and its semicolon, for splitParameters
};

class ContentLines {
 public:
  // As many bytes of a head are kept: a parameter that goes beyond them is cut. Behind it those are
  // kept that still have room, as an encoding does.
  static constexpr size_t LongestHead = 64 * 1024;
  static constexpr size_t RoomBehindCut = 1024;
  static constexpr size_t MostParameters = 256;

  // `source` isn't owned.
  explicit ContentLines(ByteSource *source) : source_(source) {}

  void setFoldRule(FoldRule rule) { rule_ = rule; }

  // Reads the next head, up to the place behind its colon; a line without a colon is read to its
  // end. The texts of `line` are valid until the next call. Answers false at the end of the input.
  bool next(ContentLine *line);

  // Passes over the line that comes next where that is quickly done: it is none of BEGIN, END and
  // AGENT, and its head is short and plain. Answers false, with nothing taken, before any other
  // line.
  bool passPlainLine();

 private:
  bool nextInBuffer(ContentLine *line);
  void gather(ContentLine *line);
  void split(size_t end, ContentLine *line);
  void takeGroup(ContentLine *line);

  ByteSource *source_;
  FoldRule rule_ = FoldRule::DropsBlank;
  std::string head_;  // of the line; its texts lie here, since the source's buffer moves on
  std::string name_;  // when blanks had to be taken out
};

}  // namespace px

#endif

// The bytes of an input, read forward through a buffer, with a place that can be gone back to.
//
// A line ends with CR LF, LF or a lone CR. Lines are counted where their end is taken.

#ifndef PX_HOST_SOURCE_BYTE_SOURCE_H
#define PX_HOST_SOURCE_BYTE_SOURCE_H

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>

#include "px/vcard_io.h"

namespace px {

struct Place {
  uint64_t position = 0;
  uint64_t line = 1;
  uint64_t column = 0;  // bytes before it in its line
};

class ByteSource {
 public:
  // Reads `io`, which isn't owned, up to the position `end`. Without `countLines` the number of the
  // line stays what moveTo was given.
  ByteSource(VcardIo *io, uint64_t end, bool countLines = true);

  // The members that read throw std::runtime_error when `io` fails.

  // The bytes that lie ready, at least one; empty at the end.
  std::string_view ready() {
    if (next_ == limit_) fill();
    return {buffer_.get() + next_, limit_ - next_};
  }
  // Passes over bytes of ready() that hold no line end.
  void skip(size_t count) { next_ += count; }

  // The next byte, 0 to 255, or -1 at the end.
  int peek() {
    if (next_ == limit_) fill();
    return next_ == limit_ ? -1 : static_cast<unsigned char>(buffer_[next_]);
  }

  // The bytes of ready() before the next CR or LF; `*ended` tells whether one lies ready there.
  std::string_view readyInLine(bool *ended) {
    if (next_ == limit_) fill();
    if (next_ < searchedFrom_ || lineEnd_ < next_) findLineEnd();
    *ended = lineEnd_ < limit_;
    return {buffer_.get() + next_, std::min(lineEnd_, limit_) - next_};
  }

  // Takes the rest of the line and its end, if all that lies ready and the next line doesn't go on
  // with it. Answers false, with nothing taken, otherwise.
  bool takeRestOfLine(std::string_view *rest) {
    bool ended;
    *rest = readyInLine(&ended);
    size_t behind = lineEnd_ + 1;
    if (!ended || behind >= limit_) return false;
    if (buffer_[lineEnd_] == '\r' && buffer_[behind] == '\n' && ++behind == limit_) return false;
    const char next = buffer_[behind];
    if (next == ' ' || next == '\t' || next == '\r' || next == '\n') return false;
    next_ = behind;
    beginLine();
    return true;
  }

  // Takes the line end that comes next; false when something else comes.
  bool takeLineEnd() {
    const int first = peek();
    if (first != '\r' && first != '\n') return false;
    ++next_;
    if (first == '\r' && peek() == '\n') ++next_;
    beginLine();
    return true;
  }

  // Up to `size` bytes of what comes next, line ends too; fewer only at the end.
  std::string_view lookAhead(size_t size);

  Place place() const { return {base_ + next_, line_, base_ + next_ - lineStart_}; }
  // Goes to a place before the end, or to one before `end`, which is the end then.
  void moveTo(const Place &place) { moveTo(place, end_); }
  void moveTo(const Place &place, uint64_t end);

 private:
  void beginLine() {
    lineStart_ = base_ + next_;
    if (countLines_) ++line_;
  }
  bool readMore();
  void restart();
  void keepRest();
  void setLimit();
  void fill();
  void findLineEnd();

  static constexpr uint32_t Capacity = 64 * 1024;

  VcardIo *io_;
  uint64_t end_;
  const bool countLines_;
  uint64_t base_ = 0;  // position of the buffer's first byte
  uint64_t line_ = 1;
  uint64_t lineStart_ = 0;  // position
  size_t next_ = 0;
  size_t filled_ = 0;
  size_t limit_ = 0;  // filled_, or where the end lies before that
  // Where the next line end lies in the buffer: kept, so that it is looked for once however often
  // somebody asks.
  size_t searchedFrom_ = 1;  // there is none from here
  size_t lineEnd_ = 0;       // up to here; before `searchedFrom_`: nothing is known
  std::unique_ptr<char[]> buffer_;
};

}  // namespace px

#endif

// The bytes of an input, read forward through a buffer, with a place that can be gone back to.
//
// A line ends with CR LF, LF or a lone CR. Lines are counted where their end is taken.

#ifndef PX_HOST_SOURCE_BYTE_SOURCE_H
#define PX_HOST_SOURCE_BYTE_SOURCE_H

#include <cstdint>
#include <memory>
#include <string_view>

#include "px/vcard_io.h"

namespace px {

struct Place {
  uint64_t position = 0;
  uint64_t line = 1;
};

class ByteSource {
 public:
  // Reads `io`, which isn't owned, up to the position `end`.
  ByteSource(VcardIo *io, uint64_t end);

  // The members that read throw std::runtime_error when `io` fails.

  // The bytes that lie ready, at least one; empty at the end.
  std::string_view ready() {
    if (next_ == filled_) fill();
    return {buffer_.get() + next_, filled_ - next_};
  }
  // Passes over bytes of ready() that hold no line end.
  void skip(size_t count) { next_ += count; }

  // The next byte, 0 to 255, or -1 at the end.
  int peek() {
    if (next_ == filled_) fill();
    return next_ == filled_ ? -1 : static_cast<unsigned char>(buffer_[next_]);
  }

  // The bytes of ready() before the next CR or LF; `*ended` tells whether one lies ready there.
  std::string_view readyInLine(bool *ended);

  // Takes the line end that comes next; false when something else comes.
  bool takeLineEnd();

  // Up to `size` bytes of what comes next, line ends too; fewer only at the end.
  std::string_view lookAhead(size_t size);

  // Moves the end to another position.
  void setEnd(uint64_t end);
  uint64_t end() const { return end_; }

  Place place() const { return {base_ + next_, line_}; }
  void moveTo(const Place &place);

 private:
  bool readMore();
  void restart();
  void fill();

  static constexpr uint32_t Capacity = 64 * 1024;

  VcardIo *io_;
  uint64_t end_;
  uint64_t base_ = 0;  // position of the buffer's first byte
  uint64_t line_ = 1;
  size_t next_ = 0;
  size_t filled_ = 0;  // up to the end that is set,
  size_t held_ = 0;    // and what the buffer holds behind it
  size_t lineFeed_ = 0;  // the first LF at or behind next_, or filled_; stale when before next_
  std::unique_ptr<char[]> buffer_;
};

}  // namespace px

#endif

#include "host/source/byte_source.h"

#include <cstring>
#include <stdexcept>

#include "host/io/open_io.h"
#include "host/source/byte_search.h"

namespace px {

ByteSource::ByteSource(VcardIo *io, uint64_t end, bool countLines)
    : io_(io),
      end_(end),
      countLines_(countLines),
      buffer_(std::make_unique_for_overwrite<char[]>(Capacity)) {}

// Reads on behind what the buffer holds; false when there is nothing more, or no room.
bool ByteSource::readMore() {
  if (filled_ == Capacity) return false;
  const auto room = static_cast<uint32_t>(Capacity - filled_);
  uint32_t count = 0;
  if (readIoAt(io_, base_ + filled_, buffer_.get() + filled_, room, &count) != 0) {
    throw std::runtime_error("the input can't be read");
  }
  filled_ += count;
  return count > 0;
}

// Starts the buffer anew at the place where the source stands.
void ByteSource::restart() {
  base_ += next_;
  next_ = filled_ = limit_ = 0;
  searchedFrom_ = 1;
  lineEnd_ = 0;
}

// Moves what isn't read yet to the head of the buffer.
void ByteSource::keepRest() {
  const size_t rest = filled_ - next_;
  std::memmove(buffer_.get(), buffer_.get() + next_, rest);
  restart();
  filled_ = rest;
}

// What is behind the end may lie in the buffer too, for when the end moves.
void ByteSource::setLimit() {
  limit_ = static_cast<size_t>(std::min<uint64_t>(filled_, end_ - base_));
}

void ByteSource::fill() {
  if (base_ + next_ == end_) return;
  restart();
  readMore();
  setLimit();
}

void ByteSource::findLineEnd() {
  searchedFrom_ = next_;
  lineEnd_ = next_ + lengthBefore({buffer_.get() + next_, filled_ - next_},
                                  [](ByteVector b) { return isByte(b, '\r') | isByte(b, '\n'); });
}

std::string_view ByteSource::lookAhead(size_t size) {
  if (limit_ - next_ < size && base_ + limit_ < end_) {
    keepRest();
    while (filled_ < size && readMore()) {
    }
    setLimit();
  }
  return std::string_view(buffer_.get() + next_, limit_ - next_).substr(0, size);
}

void ByteSource::moveTo(const Place &place, uint64_t end) {
  end_ = end;
  line_ = place.line;
  lineStart_ = place.position - place.column;
  if (base_ <= place.position && place.position <= base_ + filled_) {
    next_ = static_cast<size_t>(place.position - base_);
  } else {
    base_ = place.position;
    next_ = 0;
    restart();
  }
  setLimit();
}

}  // namespace px

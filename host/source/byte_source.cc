#include "host/source/byte_source.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "host/io/open_io.h"

namespace px {

ByteSource::ByteSource(VcardIo *io, uint64_t end)
    : io_(io), end_(end), buffer_(std::make_unique_for_overwrite<char[]>(Capacity)) {}

// Reads on behind what the buffer holds; false at the end.
bool ByteSource::readMore() {
  const uint64_t position = base_ + filled_;
  if (position >= end_ || filled_ == Capacity) return false;
  const auto room = static_cast<uint32_t>(std::min<uint64_t>(Capacity - filled_, end_ - position));
  uint32_t count = 0;
  if (readIoAt(io_, position, buffer_.get() + filled_, room, &count) != 0) {
    throw std::runtime_error("the input can't be read");
  }
  held_ = filled_ += count;
  return count > 0;
}

// Starts the buffer anew at the place where the source stands.
void ByteSource::restart() {
  base_ += next_;
  next_ = filled_ = held_ = 0;
  lineFeed_ = 1;
}

// At an end that was set the buffer stays, for whoever moves the end on.
void ByteSource::fill() {
  if (base_ + filled_ >= end_) return;
  restart();
  readMore();
  lineFeed_ = filled_ + 1;
}

// The next LF is looked for once, so that a file of lone CRs costs no search of the whole buffer
// for each of its lines.
std::string_view ByteSource::readyInLine(bool *ended) {
  const std::string_view bytes = ready();
  const auto find = [&](char wanted, size_t size) {
    const void *found = size > 0 ? std::memchr(bytes.data(), wanted, size) : nullptr;
    return found ? static_cast<size_t>(static_cast<const char *>(found) - bytes.data()) : size;
  };
  if (lineFeed_ < next_ || lineFeed_ > filled_) lineFeed_ = next_ + find('\n', bytes.size());
  const size_t size = find('\r', lineFeed_ - next_);
  *ended = size < bytes.size();
  return bytes.substr(0, size);
}

bool ByteSource::takeLineEnd() {
  const int first = peek();
  if (first != '\r' && first != '\n') return false;
  ++next_;
  if (first == '\r' && peek() == '\n') ++next_;
  ++line_;
  return true;
}

std::string_view ByteSource::lookAhead(size_t size) {
  if (filled_ - next_ < size && base_ + filled_ < end_) {
    restart();
    while (filled_ < size && readMore()) {
    }
    lineFeed_ = filled_ + 1;
  }
  return std::string_view(buffer_.get() + next_, filled_ - next_).substr(0, size);
}

void ByteSource::setEnd(uint64_t end) {
  end_ = end;
  filled_ = static_cast<size_t>(std::min<uint64_t>(held_, end - std::min(end, base_)));
  filled_ = std::max(next_, filled_);
  lineFeed_ = filled_ + 1;
}

void ByteSource::moveTo(const Place &place) {
  if (base_ <= place.position && place.position <= base_ + held_) {
    next_ = static_cast<size_t>(place.position - base_);
    setEnd(end_);
  } else {
    base_ = place.position;
    next_ = filled_ = held_ = 0;
  }
  lineFeed_ = filled_ + 1;
  line_ = place.line;
}

}  // namespace px

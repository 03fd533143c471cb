#include "host/io/base64_io.h"

#include <array>
#include <cstring>
#include <string_view>

namespace px {
namespace {

// The value of each character of the alphabet; of others one that makes its group negative.
constexpr std::array<int32_t, 256> kValues = [] {
  std::array<int32_t, 256> values;
  values.fill(-1);
  int32_t value = 0;
  for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                       "0123456789+/")) {
    values[static_cast<uint8_t>(c)] = value++;
  }
  return values;
}();

}  // namespace

BadBase64Byte badBase64Byte(VcardIo *object) {
  BadBase64Byte bad;
  object->GetInfo(object, InfoBadBase64Byte, &bad);
  return bad;
}

Base64Io::Base64Io(VcardIo *source) : source_(source) { restart(); }

int32_t Base64Io::close() {
  delete this;
  return 0;
}

int32_t Base64Io::getInfo(uint32_t selector, void *argument) {
  if (selector != InfoBadBase64Byte) return PositionedIo::getInfo(selector, argument);
  *static_cast<BadBase64Byte *>(argument) = bad_;
  return 0;
}

int32_t Base64Io::readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
  if (position < decoded_) restart();
  auto *bytes = static_cast<uint8_t *>(to);
  while (*count < size) {
    if (decoded_ >= position) *count += decodeGroups(bytes + *count, size - *count);
    if (*count == size) return 0;
    uint8_t byte;
    const Step step = decode(&byte);
    if (step == Step::End) return 0;
    // What was decoded before a failure goes out; the next read meets the failure again.
    if (step == Step::Failure) return *count > 0 ? 0 : IoFailed;
    if (decoded_++ >= position) bytes[(*count)++] = byte;
  }
  return 0;
}

void Base64Io::restart() {
  base64_decode_init(&context_);
  taken_ = 0;
  decoded_ = 0;
  ended_ = atLineHead_ = false;
  bad_ = {};
  sourceEnd_ = 0;
  next_ = filled_ = 0;
}

// Reads on in the source, behind what is still to be taken.
int32_t Base64Io::fill() {
  const uint32_t kept = filled_ - next_;
  std::memmove(buffer_, buffer_ + next_, kept);
  next_ = 0;
  filled_ = kept;
  uint32_t count = 0;
  const int32_t result = readIoAt(source_, sourceEnd_, buffer_ + kept,
                                  static_cast<uint32_t>(sizeof buffer_) - kept, &count);
  if (result != 0) return result;
  filled_ += count;
  sourceEnd_ += count;
  return 0;
}

// Decodes groups of four characters that stand together, which nearly all do; decode() takes the
// others. Answers how many bytes they were.
uint32_t Base64Io::decodeGroups(uint8_t *to, uint32_t size) {
  if (ended_ || taken_ % 4 != 0) return 0;
  uint32_t count = 0;
  for (; size - count >= 3 && filled_ - next_ >= 4; next_ += 4) {
    const uint8_t *group = buffer_ + next_;
    const int32_t bits = kValues[group[0]] << 18 | kValues[group[1]] << 12 |
                         kValues[group[2]] << 6 | kValues[group[3]];
    if (bits < 0) break;
    to[count++] = static_cast<uint8_t>(bits >> 16);
    to[count++] = static_cast<uint8_t>(bits >> 8);
    to[count++] = static_cast<uint8_t>(bits);
  }
  if (count > 0) atLineHead_ = false;
  decoded_ += count;
  return count;
}

Base64Io::Step Base64Io::decode(uint8_t *byte) {
  while (!ended_) {
    // A byte at the head of a line counts only when there is another one behind it.
    const uint32_t needed = atLineHead_ ? 2 : 1;
    const uint32_t held = filled_ - next_;
    if (held < needed) {
      if (fill() != 0) return Step::Failure;
      ended_ = filled_ == held;
      continue;
    }

    const uint8_t c = buffer_[next_++];
    const bool lineEnd = c == '\r' || c == '\n';
    atLineHead_ = lineEnd;
    if (lineEnd || c == ' ' || c == '\t') continue;
    if (c == '=') {
      ended_ = true;
      continue;
    }
    // The library passes over two more kinds of white space, which are no part of these texts.
    const bool foreignSpace = c == '\v' || c == '\f';
    const int given =
        foreignSpace ? -1 : base64_decode_single(&context_, byte, static_cast<char>(c));
    if (given >= 0) ++taken_;
    if (given > 0) return Step::Byte;
    if (given < 0) {
      bad_ = {true, c, sourceEnd_ - (filled_ - next_) - 1};
      ended_ = true;
    }
  }
  return Step::End;
}

}  // namespace px

#include "host/source/unicode_input.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

#include "host/io/open_io.h"
#include "host/source/utf8.h"

namespace px {
namespace {

constexpr uint64_t kIndexStep = 64 * 1024;

// Reads up to `size` bytes; fewer only at the end.
uint32_t readFull(VcardIo *io, uint64_t position, char *to, uint32_t size) {
  uint32_t filled = 0;
  while (filled < size) {
    uint32_t count = 0;
    if (readIoAt(io, position + filled, to + filled, size - filled, &count) != 0) {
      throw std::runtime_error("the input can't be read");
    }
    if (count == 0) break;
    filled += count;
  }
  return filled;
}

// What the first bytes tell: bytes of a unit, and of a mark. A card begins with ASCII letters.
struct Form {
  std::string_view head;
  uint64_t unit;
  uint64_t mark;
  bool bigEndian;
};

constexpr std::string_view literal(const char *bytes, size_t size) { return {bytes, size}; }

constexpr Form kForms[] = {
    {literal("\xFF\xFE\0\0", 4), 4, 4, false}, {literal("\0\0\xFE\xFF", 4), 4, 4, true},
    {literal("\xFF\xFE", 2), 2, 2, false},     {literal("\xFE\xFF", 2), 2, 2, true},
    {literal("\xEF\xBB\xBF", 3), 1, 3, false}, {literal("B\0E\0", 4), 2, 0, false},
    {literal("b\0e\0", 4), 2, 0, false},       {literal("\0B\0E", 4), 2, 0, true},
    {literal("\0b\0e", 4), 2, 0, true},
};

}  // namespace

UnicodeInput::UnicodeInput(VcardIo *file, const FaultSink &faults)
    : file_(file), io_(&text_, 0, std::numeric_limits<int64_t>::max()) {
  char bytes[4];
  const std::string_view head(bytes, readFull(file, 0, bytes, sizeof bytes));
  const auto *form = std::find_if(std::begin(kForms), std::end(kForms),
                                  [&](const Form &row) { return head.starts_with(row.head); });
  if (form == std::end(kForms)) return;
  unit_ = form->unit;
  mark_ = form->mark;
  last_.file = mark_;
  if (unit_ == 1) {
    start_ = mark_;
  } else {
    convert(form->bigEndian, faults);
  }
}

void UnicodeInput::convert(bool bigEndian, const FaultSink &faults) {
  const auto capacity = static_cast<uint32_t>(32 * 1024);
  const auto buffer = std::make_unique<char[]>(capacity);
  const auto unitAt = [&](uint32_t at) {
    char32_t unit = 0;
    for (uint64_t i = 0; i < unit_; ++i) {
      const uint64_t byte = bigEndian ? i : unit_ - 1 - i;
      unit = unit << 8 | static_cast<unsigned char>(buffer[at + byte]);
    }
    return unit;
  };
  bool good = true;
  std::string utf8;
  char32_t high = 0;  // the first half of a pair
  uint64_t position = mark_;
  for (;;) {
    const uint32_t count = readFull(file_, position, buffer.get(), capacity);
    utf8.clear();
    for (uint32_t at = 0; at + unit_ <= count; at += static_cast<uint32_t>(unit_)) {
      const char32_t unit = unitAt(at);
      const bool low = 0xDC00 <= unit && unit < 0xE000 && unit_ == 2;
      if (high != 0) {
        appendUtf8(low ? 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00) : 0xFFFD, &utf8);
        good = good && low;
        high = 0;
        if (low) continue;
      }
      const uint64_t before = text_.size() + utf8.size();
      if (0xD800 <= unit && unit < 0xDC00 && unit_ == 2) {
        high = unit;
      } else {
        good = good && !low && unit <= 0x10FFFF && unit != 0;
        appendUtf8(unit == 0 ? 0xFFFD : unit, &utf8);
      }
      if (before >= index_.size() * kIndexStep) index_.push_back({before, position + at});
    }
    text_.append(utf8);
    if (count < capacity) {
      good = good && high == 0 && count % unit_ == 0;
      break;
    }
    position += count;
  }
  if (!good) faults(1, "the file holds units that are no text in its character set");
}

// How many bytes of the file say what stands in the text from `from` to `to`. A character takes as
// many units as its UTF-8 says: four bytes are a pair.
uint64_t UnicodeInput::fileLength(uint64_t from, uint64_t to) const {
  uint64_t length = 0;
  char buffer[4096];
  while (from < to) {
    const auto wanted = static_cast<size_t>(std::min<uint64_t>(sizeof buffer, to - from));
    const size_t count = text_.readAt(from, buffer, wanted);
    if (count == 0) break;
    for (size_t i = 0; i < count; ++i) {
      const auto byte = static_cast<unsigned char>(buffer[i]);
      if ((byte & 0xC0) != 0x80) length += byte >= 0xF0 && unit_ == 2 ? 4 : unit_;
    }
    from += count;
  }
  return length;
}

uint64_t UnicodeInput::convertedPosition(uint64_t position) {
  const uint64_t distance = position < last_.text ? last_.text - position : position - last_.text;
  if (distance > kIndexStep) {
    const auto behind =
        std::upper_bound(index_.begin(), index_.end(), position,
                         [](uint64_t text, const Pair &pair) { return text < pair.text; });
    last_ = behind == index_.begin() ? Pair{0, mark_} : *std::prev(behind);
  }
  last_.file = position < last_.text ? last_.file - fileLength(position, last_.text)
                                     : last_.file + fileLength(last_.text, position);
  last_.text = position;
  return last_.file;
}

}  // namespace px

#include "host/languages/catalogue.h"

#include <utility>

namespace px {
namespace {

constexpr uint32_t kMagic = 0x950412DE;
constexpr uint32_t kHeadSize = 20;  // magic, revision, count, positions of the two tables
constexpr uint32_t kRowSize = 8;    // length and position of a text

}  // namespace

Catalogue::Catalogue(std::string bytes) : bytes_(std::move(bytes)) {
  if (bytes_.size() < kHeadSize || number(0) != kMagic) return;
  const uint32_t count = number(8);
  texts_ = number(12);
  translations_ = number(16);
  for (const uint64_t table : {texts_, translations_}) {
    if (table + uint64_t{count} * kRowSize > bytes_.size()) return;
  }
  count_ = count;
}

uint32_t Catalogue::number(size_t position) const {
  uint32_t value = 0;
  for (size_t i = 4; i-- > 0;) value = value << 8 | static_cast<uint8_t>(bytes_[position + i]);
  return value;
}

std::string_view Catalogue::entry(uint32_t table, uint32_t index) const {
  const size_t row = table + size_t{index} * kRowSize;
  const uint32_t length = number(row), position = number(row + 4);
  if (position >= bytes_.size() || length >= bytes_.size() - position) return {};
  if (bytes_[position + size_t{length}] != '\0') return {};
  return std::string_view(bytes_).substr(position, length);
}

// The texts are sorted by their bytes.
std::string_view Catalogue::find(std::string_view text) const {
  uint32_t first = 0, last = count_;
  while (first < last) {
    const uint32_t middle = first + (last - first) / 2;
    const int order = entry(texts_, middle).compare(text);
    if (order == 0) return entry(translations_, middle);
    if (order < 0) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return {};
}

}  // namespace px

#include "host/command/object_choice.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "host/io/base64_io.h"
#include "host/saving/content_type.h"
#include "px/string_ids.h"

namespace px {

void ObjectChoice::object(const PlacedObject &object) {
  ++count_;
  const bool isPhoto = label_ == VcardStringPhoto;
  const bool isWanted = number_ == Picture ? isPhoto || !content_ : count_ == number_;
  if (isMade() || !isWanted) return;
  const bool isByLabel = number_ != Picture || isPhoto || label_ == VcardStringLogo;

  // It is whole or not at all, so what fails on the way changes nothing.
  SpoolFile content;
  const OpenIo io = object.open();
  char buffer[16 * 1024];
  for (;;) {
    uint32_t count = 0;
    if (io->Read(io.get(), buffer, sizeof buffer, &count) != 0) {
      throw std::runtime_error("an embedded object can't be read");
    }
    const std::string_view piece(buffer, count);
    if (content.size() == 0 && !isByLabel && !guessContentType(piece).mime.starts_with("image/")) {
      return;
    }
    if (count == 0) break;
    content.append(piece);
  }
  if (content.size() == 0 && number_ == Picture) return;
  content_ = std::move(content);
  isSecondBest_ = number_ == Picture && !isPhoto;
  isDamaged_ = badBase64Byte(io.get()).found;
}

void ObjectChoice::write(FileWriter *out) const {
  char buffer[16 * 1024];
  for (uint64_t at = 0; at < content_->size();) {
    const size_t count = content_->readAt(at, buffer, sizeof buffer);
    out->write({buffer, count});
    at += count;
  }
}

}  // namespace px

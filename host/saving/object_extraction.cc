#include "host/saving/object_extraction.h"

#include <strings.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "host/io/base64_io.h"
#include "host/labels/label_texts.h"
#include "host/saving/content_type.h"
#include "host/saving/name_pattern.h"

namespace px {
namespace {

constexpr size_t kBufferSize = 65536;

// A title's extension, with its dot; empty when it has none. Some letters and digits, so that it
// is safe in a file name as it stands.
std::string_view extensionOf(std::string_view title) {
  constexpr size_t kLongest = 10;
  const size_t dot = title.find_last_of('.');
  if (dot == title.npos || dot == 0 || dot + 1 == title.size()) return {};
  const std::string_view extension = title.substr(dot);
  const auto isPlain = [](char c) {
    return ('0' <= c && c <= '9') || ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z');
  };
  const bool plain = std::all_of(extension.begin() + 1, extension.end(), isPlain);
  return plain && extension.size() <= kLongest ? extension : std::string_view();
}

std::string chooseExtension(std::string_view title, const ContentType &type) {
  std::string own(extensionOf(title));
  if (type.vague && !own.empty()) return own;
  std::istringstream list{std::string(type.extensions)};
  std::string best, usual;
  while (list >> usual) {
    if (strcasecmp(usual.c_str(), own.c_str()) == 0) return own;
    if (best.empty()) best = usual;
  }
  return best;
}

// The label as the middle of a file name: "Sound alarm" gives "sound-alarm". A property without one
// goes by its own name.
std::string asFileName(const Property &property) {
  std::string name(property.label != 0 ? labelText(property.label) : property.name);
  for (char &c : name) {
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c == ' ') c = '-';
  }
  constexpr size_t longest = 64;
  if (name.size() > longest) name.clear();
  name = safeFileName(name, "");
  return name.empty() ? "object" : name;
}

}  // namespace

ObjectExtraction::ObjectExtraction(const std::string &file, Target *target, CheckInput checkInput,
                                   Report report)
    : file_(file),
      target_(*target),
      checkInput_(std::move(checkInput)),
      report_(std::move(report)) {}

void ObjectExtraction::beginSection(const Section &section) {
  section_ = section.number;
  count_.clear();
}

void ObjectExtraction::beginProperty(const Property &property) { name_ = asFileName(property); }

// Fills the buffer from the object as far as there are bytes; answers their number.
size_t ObjectExtraction::readFull(VcardIo *io) {
  size_t filled = 0;
  while (filled < buffer_.size()) {
    uint32_t count = 0;
    const auto room = static_cast<uint32_t>(buffer_.size() - filled);
    const int32_t result = io->Read(io, buffer_.data() + filled, room, &count);
    checkInput_();
    if (result != 0) throw std::runtime_error("an embedded object can't be read");
    if (count == 0) break;
    filled += count;
  }
  return filled;
}

void ObjectExtraction::object(const PlacedObject &object) {
  checkInput_();
  if (buffer_.empty()) buffer_.resize(kBufferSize);
  const OpenIo content = object.open();

  SavedObject saved;
  ContentDigest digest;
  target_.directory.begin();
  size_t count = readFull(content.get());
  const ContentType type = guessContentType({buffer_.data(), count});
  while (count > 0) {
    target_.directory.write(buffer_.data(), count);
    digest.add(buffer_.data(), count);
    saved.size += count;
    count = readFull(content.get());
  }

  ++count_[name_];
  ++number_;
  const Digest hash = digest.take();
  if (const std::string *name = target_.contents.find(hash)) {
    target_.directory.abandon();
    saved.name = *name;
  } else {
    saved.name = commit(object, chooseExtension(object.title, type));
    target_.contents.add(hash, saved.name);
  }
  saved.card = section_;
  saved.type = type.mime;
  saved.damaged = badBase64Byte(content.get()).found;
  report_(saved);
}

// Answers the name that the file has got.
std::string ObjectExtraction::commit(const PlacedObject &object, std::string_view extension) {
  const std::string card = std::to_string(section_);
  const std::string neutral =
      card + "-" + name_ + "-" + std::to_string(count_[name_]) + std::string(extension);
  std::string name = object.title;
  if (!target_.pattern.empty()) {
    std::string title = object.title;
    title.resize(title.size() - extensionOf(title).size());
    name = nameByPattern(target_.pattern, {std::filesystem::path(file_).stem().string(), card,
                                           name_, std::to_string(number_), title});
  }
  return target_.directory.commit(safeFileName(name, extension), neutral, extension);
}

}  // namespace px

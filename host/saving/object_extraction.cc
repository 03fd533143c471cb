#include "host/saving/object_extraction.h"

#include <strings.h>

#include <algorithm>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>

#include "host/io/base64_io.h"
#include "host/saving/content_type.h"
#include "host/labels/label_texts.h"

namespace px {
namespace {

constexpr size_t kBufferSize = 65536;
constexpr uint32_t kBase64 = 2;

struct CloseIo {
  void operator()(VcardIo *io) const { io->Close(io); }
};
using OpenIo = std::unique_ptr<VcardIo, CloseIo>;

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
  const std::string own(extensionOf(title));
  if (type.vague && !own.empty()) return own;
  std::istringstream list{std::string(type.extensions)};
  std::string best, usual;
  while (list >> usual) {
    if (strcasecmp(usual.c_str(), own.c_str()) == 0) return own;
    if (best.empty()) best = usual;
  }
  return best;
}

// The label as the middle of a file name: "Sound alarm" gives "sound-alarm".
std::string labelAsName(uint32_t label) {
  std::string name(labelText(label));
  for (char &c : name) {
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c == ' ') c = '-';
  }
  return name.empty() ? "object" : name;
}

}  // namespace

ObjectExtraction::ObjectExtraction(const FilterLibrary &filter, SaveDirectory *directory,
                                   CheckInput checkInput, Report report)
    : filter_(filter),
      directory_(*directory),
      checkInput_(std::move(checkInput)),
      report_(std::move(report)) {}

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

void ObjectExtraction::save(std::string_view title) {
  checkInput_();
  if (buffer_.empty()) buffer_.resize(kBufferSize);

  VcardIo *opened = nullptr;
  // The ranges that the filter gives are never empty, so what fails is memory.
  if (filter_.doSpecial(stream_, start_, &opened, length_, 0, kBase64) != 0) throw std::bad_alloc();
  const OpenIo object(opened);

  SavedObject saved;
  directory_.begin();
  size_t count = readFull(object.get());
  const ContentType type = guessContentType({buffer_.data(), count});
  while (count > 0) {
    directory_.write(buffer_.data(), count);
    saved.size += count;
    count = readFull(object.get());
  }

  const std::string extension = chooseExtension(title, type);
  const std::string neutral = std::to_string(section_) + "-" + labelAsName(label_) + "-" +
                              std::to_string(++count_[label_]) + extension;
  saved.name = directory_.commit(safeFileName(title, extension), neutral, extension);
  saved.card = section_;
  saved.type = type.mime;
  saved.damaged = badBase64Byte(object.get()).found;
  report_(saved);
}

void ObjectExtraction::beginSection(uint32_t, uint32_t, uint32_t) {
  ++section_;
  count_.clear();
}

void ObjectExtraction::setObjectData(uint32_t selector, uint64_t a, uint64_t b) {
  // An object's range reaches one byte past its text, an attachment's doesn't.
  if (selector == SoObjectDataRange) {
    start_ = a;
    length_ = b - 1;
  } else if (selector == SoObjectDataExtent) {
    start_ = a;
    length_ = b - a;
  }
}

void ObjectExtraction::emitObject(const VcardObjectRecord &) { save({}); }

// An attachment is what its definition says, and the characters in between are its title.

void ObjectExtraction::beginDefinition(uint32_t type, uint32_t id, const void *record) {
  if (type == SoDefinitionAttachment) {
    inTitle_ = true;
    title_.clear();
  } else if (type == SoDefinitionStyle) {
    if (static_cast<const VcardStyleDef *>(record)->StyleDefKind == 1) paragraphStyles_.insert(id);
  }
}

void ObjectExtraction::emitChar(uint16_t code) {
  if (inTitle_) decoder_.put(code, &title_);
}

void ObjectExtraction::endDefinition(uint32_t type, uint32_t) {
  if (type != SoDefinitionAttachment) return;
  inTitle_ = false;
  decoder_.finish(&title_);
  save(title_);
}

// The first string behind a paragraph style is the property's label.

void ObjectExtraction::useStyle(uint32_t id) {
  if (paragraphStyles_.count(id) > 0) labelExpected_ = true;
}

void ObjectExtraction::emitResourceString(uint32_t id) {
  if (labelExpected_) label_ = id;
  labelExpected_ = false;
}

}  // namespace px

#include "host/writers/object_content.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "host/source/ascii_case.h"

namespace px {
namespace {

constexpr size_t kPiece = 16 * 1024;

struct Kind {
  std::string_view mime;
  std::string_view text;
};

constexpr Kind kKinds[] = {
    {"application/msword", "Word document"},
    {"application/pdf", "PDF document"},
    {"application/pgp-keys", "PGP key"},
    {"application/pkcs7-signature", "signature"},
    {"application/pkix-cert", "certificate"},
    {"application/rtf", "RTF document"},
    {"application/vnd.ms-excel", "Excel sheet"},
    {"application/vnd.ms-powerpoint", "PowerPoint slides"},
    {"application/vnd.oasis.opendocument.spreadsheet", "OpenDocument sheet"},
    {"application/vnd.oasis.opendocument.text", "OpenDocument text"},
    {"application/vnd.openxmlformats-officedocument.presentationml.presentation",
     "PowerPoint slides"},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet", "Excel sheet"},
    {"application/vnd.openxmlformats-officedocument.wordprocessingml.document", "Word document"},
    {"application/x-x509-ca-cert", "certificate"},
    {"application/zip", "ZIP archive"},
    {"audio/basic", "AU sound"},
    {"audio/mp4", "MP4 sound"},
    {"audio/mpeg", "MP3 sound"},
    {"audio/ogg", "Ogg sound"},
    {"audio/x-aiff", "AIFF sound"},
    {"audio/x-wav", "WAVE sound"},
    {"image/bmp", "BMP image"},
    {"image/gif", "GIF image"},
    {"image/heic", "HEIC image"},
    {"image/jpeg", "JPEG image"},
    {"image/png", "PNG image"},
    {"image/svg+xml", "SVG image"},
    {"image/tiff", "TIFF image"},
    {"image/webp", "WebP image"},
    {"image/x-ms-bmp", "BMP image"},
    {"image/x-pict", "PICT image"},
    {"text/calendar", "calendar"},
    {"text/html", "HTML text"},
    {"text/plain", "text"},
    {"text/rtf", "RTF document"},
    {"text/vcard", "card"},
    {"video/mp4", "MP4 video"},
    {"video/mpeg", "MPEG video"},
    {"video/quicktime", "QuickTime video"},
};

static_assert(std::adjacent_find(std::begin(kKinds), std::end(kKinds),
                                 [](const Kind &a, const Kind &b) { return a.mime >= b.mime; }) ==
              std::end(kKinds));

bool isMimeType(std::string_view text) {
  const auto isPart = [](char c) {
    return ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z') || ('0' <= c && c <= '9') ||
           std::string_view("/.+-_").find(c) != std::string_view::npos;
  };
  return std::count(text.begin(), text.end(), '/') == 1 && text.front() != '/' &&
         text.back() != '/' && std::all_of(text.begin(), text.end(), isPart);
}

}  // namespace

ContentReader::ContentReader(const PlacedObject &object, const ContentTypeOf &contentTypeOf)
    : io_(object.open()), piece_(kPiece), filled_(readFull()) {
  type_ = contentTypeOf(piece_.data(), filled_);
  const bool vague = type_ == "application/octet-stream" || type_ == "text/plain";
  isDeclared_ = vague && isMimeType(object.declaredType);
  if (isDeclared_) type_ = inSmallLetters(object.declaredType);
}

std::string_view ContentReader::next() {
  if (begun_) filled_ = filled_ == kPiece ? readFull() : 0;
  begun_ = true;
  return {piece_.data(), filled_};
}

// Fills the piece as far as the content goes and answers how far.
size_t ContentReader::readFull() {
  size_t filled = 0;
  while (filled < piece_.size()) {
    uint32_t count = 0;
    const auto room = static_cast<uint32_t>(piece_.size() - filled);
    if (io_->Read(io_.get(), piece_.data() + filled, room, &count) != 0) {
      throw std::runtime_error("an embedded object can't be read");
    }
    if (count == 0) break;
    filled += count;
  }
  return filled;
}

ObjectContent examineContent(const PlacedObject &object, const ContentTypeOf &contentTypeOf) {
  ContentReader reader(object, contentTypeOf);
  ObjectContent content{reader.type(), 0};
  if (object.size) {
    content.size = *object.size;
    return content;
  }
  for (size_t count; (count = reader.next().size()) > 0;) content.size += count;
  return content;
}

std::string_view contentKind(std::string_view mime) {
  const Kind *found =
      std::lower_bound(std::begin(kKinds), std::end(kKinds), mime,
                       [](const Kind &kind, std::string_view type) { return kind.mime < type; });
  return found != std::end(kKinds) && found->mime == mime ? found->text : "data";
}

std::string sizeInWords(uint64_t bytes) {
  std::string digits = std::to_string(bytes);
  for (size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, 1, ',');
  return digits + (bytes == 1 ? " byte" : " bytes");
}

}  // namespace px

#include "host/writers/object_content.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "host/languages/translation.h"
#include "host/source/ascii_case.h"

namespace px {
namespace {

constexpr size_t kPiece = 16 * 1024;

struct Kind {
  std::string_view mime;
  std::string_view text;
};

constexpr Kind kKinds[] = {
    {"application/msword", N_("Word document")},
    {"application/pdf", N_("PDF document")},
    {"application/pgp-keys", N_("PGP key")},
    {"application/pkcs7-signature", N_("signature")},
    {"application/pkix-cert", N_("certificate")},
    {"application/rtf", N_("RTF document")},
    {"application/vnd.ms-excel", N_("Excel sheet")},
    {"application/vnd.ms-powerpoint", N_("PowerPoint slides")},
    {"application/vnd.oasis.opendocument.spreadsheet", N_("OpenDocument sheet")},
    {"application/vnd.oasis.opendocument.text", N_("OpenDocument text")},
    {"application/vnd.openxmlformats-officedocument.presentationml.presentation",
     N_("PowerPoint slides")},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet", N_("Excel sheet")},
    {"application/vnd.openxmlformats-officedocument.wordprocessingml.document",
     N_("Word document")},
    {"application/x-x509-ca-cert", N_("certificate")},
    {"application/zip", N_("ZIP archive")},
    {"audio/basic", N_("AU sound")},
    {"audio/mp4", N_("MP4 sound")},
    {"audio/mpeg", N_("MP3 sound")},
    {"audio/ogg", N_("Ogg sound")},
    {"audio/x-aiff", N_("AIFF sound")},
    {"audio/x-wav", N_("WAVE sound")},
    {"image/bmp", N_("BMP image")},
    {"image/gif", N_("GIF image")},
    {"image/heic", N_("HEIC image")},
    {"image/jpeg", N_("JPEG image")},
    {"image/png", N_("PNG image")},
    {"image/svg+xml", N_("SVG image")},
    {"image/tiff", N_("TIFF image")},
    {"image/webp", N_("WebP image")},
    {"image/x-ms-bmp", N_("BMP image")},
    {"image/x-pict", N_("PICT image")},
    {"text/calendar", N_("calendar")},
    {"text/html", N_("HTML text")},
    {"text/plain", N_("text")},
    {"text/rtf", N_("RTF document")},
    {"text/vcard", N_("card")},
    {"video/mp4", N_("MP4 video")},
    {"video/mpeg", N_("MPEG video")},
    {"video/quicktime", N_("QuickTime video")},
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
  return tr(found != std::end(kKinds) && found->mime == mime ? found->text : N_("data"));
}

std::string sizeInWords(uint64_t bytes) {
  std::string digits = std::to_string(bytes);
  const std::string_view comma = trIn("between thousands", ",");
  for (size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, comma);
  return bytes == 1 ? std::string(tr("1 byte")) : filled(tr("%1 bytes"), {digits});
}

}  // namespace px

#include "host/content_type.h"

#include <magic.h>

#include <cstdint>

namespace px {
namespace {

constexpr char kUnknown[] = "application/octet-stream";

// Where the data base knows no extension, or not first the one that people expect.
struct UsualExtension {
  std::string_view mime;
  std::string_view extension;
};

constexpr UsualExtension kUsualExtensions[] = {
    {kUnknown, ".bin"},          {"application/pgp-keys", ".pgp"}, {"application/x-empty", ".bin"},
    {"application/zip", ".zip"}, {"audio/basic", ".au"},           {"audio/mpeg", ".mp3"},
    {"audio/ogg", ".ogg"},       {"image/jpeg", ".jpg"},           {"text/calendar", ".ics"},
    {"text/html", ".html"},      {"text/plain", ".txt"},           {"text/xml", ".xml"},
};

// Text, archives and unknown bytes can be parts of many kinds of file.
bool isVague(std::string_view mime) {
  return mime.starts_with("text/") || mime == kUnknown || mime == "application/x-empty" ||
         mime == "application/zip";
}

// A certificate is a DER sequence, of 256 to 65535 bytes, that begins with a sequence. The data
// base doesn't know it.
bool isCertificate(const void *bytes, size_t size) {
  const auto *byte = static_cast<const uint8_t *>(bytes);
  if (size < 8 || byte[0] != 0x30 || byte[1] != 0x82 || byte[4] != 0x30 || byte[5] != 0x82) {
    return false;
  }
  const int outer = byte[2] << 8 | byte[3];
  const int inner = byte[6] << 8 | byte[7];
  return inner + 4 < outer;
}

// "jpeg/jpg" to ".jpeg", ".jpg"; "???" is the data base's word for none.
void addExtensions(std::string_view list, std::vector<std::string> *extensions) {
  while (!list.empty() && list != "???") {
    const size_t end = list.find('/');
    extensions->push_back("." + std::string(list.substr(0, end)));
    list = end == list.npos ? "" : list.substr(end + 1);
  }
}

}  // namespace

void ContentTypeGuesser::Close::operator()(magic_set *cookie) const { magic_close(cookie); }

ContentTypeGuesser::ContentTypeGuesser() : cookie_(magic_open(MAGIC_NONE)) {
  if (cookie_ && magic_load(cookie_.get(), nullptr) != 0) cookie_.reset();
}

ContentType ContentTypeGuesser::guess(const void *bytes, size_t size) const {
  if (isCertificate(bytes, size)) return {"application/pkix-cert", {".der", ".cer", ".crt"}, false};
  ContentType type;
  const auto ask = [&](int flags) -> std::string_view {
    if (!cookie_) return {};
    magic_setflags(cookie_.get(), flags);
    const char *answer = magic_buffer(cookie_.get(), bytes, size);
    return answer ? answer : "";
  };
  type.mime = ask(MAGIC_MIME_TYPE);
  if (type.mime.empty()) type.mime = kUnknown;
  for (const UsualExtension &usual : kUsualExtensions) {
    if (usual.mime == type.mime) type.extensions.emplace_back(usual.extension);
  }
  addExtensions(ask(MAGIC_EXTENSION), &type.extensions);
  type.vague = isVague(type.mime) || type.extensions.empty();
  if (type.extensions.empty()) type.extensions.emplace_back(".bin");
  return type;
}

}  // namespace px

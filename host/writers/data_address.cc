#include "host/writers/data_address.h"

#include <nettle/base64.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace px {
namespace {

constexpr std::string_view kPictures[] = {"image/avif", "image/bmp",    "image/gif",
                                          "image/jpeg", "image/png",    "image/svg+xml",
                                          "image/webp", "image/x-icon", "image/x-ms-bmp"};
constexpr std::string_view kSounds[] = {"audio/aac", "audio/flac", "audio/mp4",  "audio/mpeg",
                                        "audio/ogg", "audio/wav",  "audio/webm", "audio/x-wav"};

template <size_t N>
bool has(const std::string_view (&list)[N], std::string_view entry) {
  return std::find(std::begin(list), std::end(list), entry) != std::end(list);
}

}  // namespace

uint64_t putDataAddress(ContentReader *content, HtmlStream *to) {
  to->put("data:");
  to->putText(content->type());
  to->put(";base64,");
  base64_encode_ctx context;
  base64_encode_init(&context);
  uint64_t size = 0;
  std::string text;
  for (std::string_view piece; !(piece = content->next()).empty();) {
    size += piece.size();
    text.resize(BASE64_ENCODE_LENGTH(piece.size()));
    text.resize(base64_encode_update(&context, text.data(), piece.size(),
                                     reinterpret_cast<const uint8_t *>(piece.data())));
    to->put(text);
  }
  text.resize(BASE64_ENCODE_FINAL_LENGTH);
  text.resize(base64_encode_final(&context, text.data()));
  to->put(text);
  return size;
}

bool isShownPicture(std::string_view mime) { return has(kPictures, mime); }

bool isPlayedSound(std::string_view mime) { return has(kSounds, mime); }

}  // namespace px

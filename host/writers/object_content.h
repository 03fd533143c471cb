// What writers tell of Base64 data in a card.

#ifndef PX_HOST_WRITERS_OBJECT_CONTENT_H
#define PX_HOST_WRITERS_OBJECT_CONTENT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/reading/card_events.h"

namespace px {

// Answers the MIME type of some content by its first bytes.
using ContentTypeOf = std::function<std::string(const void *bytes, size_t size)>;

struct ObjectContent {
  std::string type;   // MIME type
  uint64_t size = 0;  // in bytes
};

// Reads the content's first bytes, and all of it where its size isn't known. Throws
// std::runtime_error, with a text for a person, when it can't be read.
ObjectContent examineContent(const PlacedObject &object, const ContentTypeOf &contentTypeOf);

// Answers what a person calls content of the MIME type, "JPEG image"; "data" for types that cards
// seldom hold. In the language chosen.
std::string_view contentKind(std::string_view mime);

// "23,040 bytes", "1 byte"; in the language chosen.
std::string sizeInWords(uint64_t bytes);

}  // namespace px

#endif

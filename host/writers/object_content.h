// What writers tell of Base64 data in a card.

#ifndef PX_HOST_WRITERS_OBJECT_CONTENT_H
#define PX_HOST_WRITERS_OBJECT_CONTENT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/reading/card_events.h"

namespace px {

// Answers the MIME type of some content by its first bytes.
using ContentTypeOf = std::function<std::string(const void *bytes, size_t size)>;

// The content of an object, read once from its start to its end. The members throw
// std::runtime_error, with a text for a person, when it can't be read.
class ContentReader {
 public:
  // Reads the first piece.
  ContentReader(const PlacedObject &object, const ContentTypeOf &contentTypeOf);

  // The MIME type: what the bytes tell, or, where they say little, what the card declares.
  const std::string &type() const { return type_; }
  bool isDeclared() const { return isDeclared_; }

  // Answers the next piece, the first one at first; an empty one at the end. It is valid until the
  // next call.
  std::string_view next();

 private:
  size_t readFull();

  const OpenIo io_;
  std::vector<char> piece_;
  size_t filled_ = 0;
  bool begun_ = false;
  std::string type_;
  bool isDeclared_ = false;
};

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

// Objects in a page: their content as an address of its own.

#ifndef PX_HOST_WRITERS_DATA_ADDRESS_H
#define PX_HOST_WRITERS_DATA_ADDRESS_H

#include <cstdint>
#include <string_view>

#include "host/writers/html_text.h"
#include "host/writers/object_content.h"

namespace px {

// Puts "data:image/jpeg;base64,..." with all of the content, piece by piece, and answers the
// content's size in bytes.
uint64_t putDataAddress(ContentReader *content, HtmlStream *to);

// Whether browsers show pictures of the MIME type, or play sounds of it.
bool isShownPicture(std::string_view mime);
bool isPlayedSound(std::string_view mime);

}  // namespace px

#endif

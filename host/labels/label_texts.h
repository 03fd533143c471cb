// The texts of the string ids that the filter passes to SoEmitResourceString.

#ifndef PX_HOST_LABELS_LABEL_TEXTS_H
#define PX_HOST_LABELS_LABEL_TEXTS_H

#include <cstdint>
#include <string_view>

namespace px {

// Answers the English text of a string id, in ASCII; an empty text for an id that isn't known.
std::string_view labelText(uint32_t id);

}  // namespace px

#endif

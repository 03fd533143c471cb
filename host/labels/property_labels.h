// What a person calls properties, types and parameters: the texts of label_texts.h where the filter
// has a string id, and texts for well-known names that it has none for. All in English and ASCII,
// where nothing else is said.

#ifndef PX_HOST_LABELS_PROPERTY_LABELS_H
#define PX_HOST_LABELS_PROPERTY_LABELS_H

#include <cstdint>
#include <string>
#include <string_view>

namespace px {

// Answers the label of a property with the string id `label`, 0 for none, and the name, in
// capitals, which may be empty; an empty text when there is none.
std::string_view propertyLabel(uint32_t label, std::string_view name);

// Answers what a type, in small letters, is shown as; the type itself when it isn't a known one.
std::string_view typeLabel(std::string_view type);

// The same in the language chosen. A type that isn't a known one stays as it is, even where a text
// of that name has a translation.
std::string_view typeInWords(std::string_view type);

// Answers the label of a parameter that is shown in a row of its own, such as the role of an
// attendee; `name` is in capitals. An empty text for any other one.
std::string_view parameterLabel(std::string_view name);

}  // namespace px

#endif

// What was meant by a word that isn't known.

#ifndef PX_HOST_COMMAND_SUGGESTION_H
#define PX_HOST_COMMAND_SUGGESTION_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace px {

// Answers which of `known` is nearest to `word`, the first of several; nothing where none is near:
// where more than a third of the letters would have to be changed, put in, left out or swapped.
std::optional<size_t> nearest(std::string_view word, const std::vector<std::string> &known);

// Answers the option that is meant by a name, without dashes, that there isn't: "--format", or
// "--format json" for what is a value, or all that begin with the name. Empty where none is near.
std::string suggestedOption(std::string_view name);

}  // namespace px

#endif

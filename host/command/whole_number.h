// A number as a person writes it.

#ifndef PX_HOST_COMMAND_WHOLE_NUMBER_H
#define PX_HOST_COMMAND_WHOLE_NUMBER_H

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace px {

// Nothing where the text is anything but digits, or the number is too large.
inline std::optional<uint32_t> wholeNumber(std::string_view text) {
  uint32_t number = 0;
  const char *end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stopped != end) return std::nullopt;
  return number;
}

}  // namespace px

#endif

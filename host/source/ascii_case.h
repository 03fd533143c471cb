// The letters A to Z in either case. All other bytes stay as they are.

#ifndef PX_HOST_SOURCE_ASCII_CASE_H
#define PX_HOST_SOURCE_ASCII_CASE_H

#include <string>
#include <string_view>

namespace px {

bool equalsNoCase(std::string_view a, std::string_view b);
std::string inCapitals(std::string_view text);
std::string inSmallLetters(std::string_view text);

// `text` with "?" for each byte that is no visible character or blank of ASCII: for words of the
// format, which are nothing else.
std::string asciiWord(std::string_view text);

}  // namespace px

#endif

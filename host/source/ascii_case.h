// The letters A to Z in either case. All other bytes stay as they are.

#ifndef PX_HOST_SOURCE_ASCII_CASE_H
#define PX_HOST_SOURCE_ASCII_CASE_H

#include <string>
#include <string_view>

namespace px {

inline char capitalOf(char c) {
  return 'a' <= c && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool sameLettersNoCase(std::string_view a, std::string_view b);

// Most texts that are compared differ in their lengths or in their first letters.
inline bool equalsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  return a.empty() || (((a[0] ^ b[0]) & ~0x20) == 0 && sameLettersNoCase(a, b));
}
std::string inCapitals(std::string_view text);
std::string inSmallLetters(std::string_view text);

}  // namespace px

#endif

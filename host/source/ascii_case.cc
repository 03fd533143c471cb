#include "host/source/ascii_case.h"

#include <algorithm>

namespace px {
namespace {

char toSmall(char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool sameLettersNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(),
                    [](char x, char y) { return capitalOf(x) == capitalOf(y); });
}

std::string inCapitals(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), capitalOf);
  return result;
}

std::string inSmallLetters(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), toSmall);
  return result;
}

}  // namespace px

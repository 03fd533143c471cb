#include "host/source/ascii_case.h"

#include <algorithm>

namespace px {
namespace {

char toCapital(char c) { return 'a' <= c && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char toSmall(char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool equalsNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return toCapital(x) == toCapital(y); });
}

std::string inCapitals(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), toCapital);
  return result;
}

std::string inSmallLetters(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), toSmall);
  return result;
}

std::string asciiWord(std::string_view text) {
  std::string word(text);
  for (char &c : word) {
    if (c < ' ' || c > '~') c = '?';
  }
  return word;
}

}  // namespace px

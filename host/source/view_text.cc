#include "host/source/view_text.h"

#include <algorithm>
#include <array>

namespace px {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

void appendEncoded(char byte, std::string *to) {
  const auto value = static_cast<unsigned char>(byte);
  *to += '=';
  *to += kDigits[value >> 4];
  *to += kDigits[value & 15];
}

int valueOfDigit(char digit) { return digit <= '9' ? digit - '0' : digit - 'A' + 10; }

// Where the first byte stands that has to be encoded.
size_t plainLength(std::string_view text) {
  static constexpr auto kEncoded = [] {
    std::array<bool, 256> table{};
    for (const char byte : {'=', ':', ';', '\r', '\n'}) table[static_cast<unsigned char>(byte)] = true;
    return table;
  }();
  size_t at = 0;
  while (at < text.size() && !kEncoded[static_cast<unsigned char>(text[at])]) ++at;
  return at;
}

}  // namespace

void ViewText::putQuoted(std::string_view text) {
  for (;;) {
    const size_t plain = plainLength(text);
    if (plain == text.size()) return put(text);
    encoded_.assign(text, 0, plain);
    appendEncoded(text[plain], &encoded_);
    put(encoded_);
    text.remove_prefix(plain + 1);
  }
}

void ViewText::putField(std::string_view field, bool first) {
  if (first && !field.empty()) {
    encoded_.clear();
    appendEncoded(field.front(), &encoded_);
    put(encoded_);
    field.remove_prefix(1);
  }
  putQuoted(field);
}

void ViewText::putPlain(std::string_view text) {
  for (;;) {
    const size_t line = text.find('\n');
    put(text.substr(0, line));
    if (line == text.npos) return;
    put("\n \n");
    text.remove_prefix(line + 1);
  }
}

void appendUnquoted(std::string_view value, std::string *text) {
  while (!value.empty()) {
    const size_t plain = std::min(value.find('='), value.size());
    text->append(value, 0, plain);
    if (plain + 2 >= value.size()) return;
    *text +=
        static_cast<char>(valueOfDigit(value[plain + 1]) << 4 | valueOfDigit(value[plain + 2]));
    value.remove_prefix(plain + 3);
  }
}

}  // namespace px

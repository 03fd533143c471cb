#include "host/source/view_text.h"

#include <algorithm>

#include "host/source/byte_search.h"

namespace px {
namespace {

constexpr size_t kLongestEncoded = 3;  // bytes that stand for one
constexpr char kDigits[] = "0123456789ABCDEF";

// Writes one byte at `to`; answers where it ends.
char *encode(char byte, char *to) {
  const auto value = static_cast<unsigned char>(byte);
  *to++ = '=';
  *to++ = kDigits[value >> 4];
  *to++ = kDigits[value & 15];
  return to;
}

int valueOfDigit(char digit) { return digit <= '9' ? digit - '0' : digit - 'A' + 10; }

ByteVector isEncoded(ByteVector b) {
  return isByte(b, '=') | isByte(b, ':') | isByte(b, ';') | isByte(b, '\r') | isByte(b, '\n');
}

}  // namespace

void ViewText::putQuoted(std::string_view text) {
  constexpr size_t longest = 4096;  // for what has little room goes to a file
  while (!text.empty()) {
    std::string_view piece = text.substr(0, longest);
    text.remove_prefix(piece.size());
    char *to = spool_.room(kLongestEncoded * piece.size());
    for (;;) {
      const size_t plain = lengthBefore(piece, isEncoded);
      to = std::copy_n(piece.data(), plain, to);
      if (plain == piece.size()) break;
      to = encode(piece[plain], to);
      piece.remove_prefix(plain + 1);
    }
    spool_.commit(to);
  }
}

void ViewText::putField(std::string_view field, bool first) {
  if (first && !field.empty()) {
    spool_.commit(encode(field.front(), spool_.room(kLongestEncoded)));
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

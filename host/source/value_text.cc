#include "host/source/value_text.h"

#include "host/source/byte_search.h"

namespace px {
namespace {

ByteVector hasMeaning(ByteVector b) {
  return isByte(b, '\\') | isByte(b, '\r') | isByte(b, FieldDivider);
}

}  // namespace

size_t plainLength(std::string_view utf8) { return lengthBefore(utf8, hasMeaning); }

void ValueText::put(std::string_view utf8, std::string *text) {
  while (!utf8.empty()) {
    size_t plain = 0;
    if (!backslash_ && !carriageReturn_) {
      const char separator = separator_ != 0 ? separator_ : '\r';
      plain = lengthBefore(
          utf8, [separator](ByteVector b) { return hasMeaning(b) | isByte(b, separator); });
      text->append(utf8, 0, plain);
      if (plain == utf8.size()) return;
    }
    putOne(utf8[plain], text);
    utf8.remove_prefix(plain + 1);
  }
}

void ValueText::putOne(char c, std::string *text) {
  if (backslash_) {
    backslash_ = false;
    if (escapes_ && (c == 'n' || c == 'N')) {
      *text += '\n';
      return;
    }
    const bool known = escapes_ ? c == ',' || c == ';' || c == '\\' : c == ';' && separator_ != 0;
    if (known) {
      *text += c;
      return;
    }
    *text += '\\';
  }
  const bool behindReturn = carriageReturn_;
  carriageReturn_ = c == '\r';
  if (c == '\\') {
    backslash_ = true;
  } else if (c == '\r') {
    *text += '\n';
  } else if (separator_ != 0 && c == separator_) {
    *text += FieldDivider;
  } else if (separator_ != 0 && c == FieldDivider) {
    *text += "\uFFFD";
  } else if (c != '\n' || !behindReturn) {
    *text += c;
  }
}

void ValueText::finish(std::string *text) {
  if (backslash_) *text += '\\';
  backslash_ = carriageReturn_ = false;
}

}  // namespace px

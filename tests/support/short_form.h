// A listing in a shorter form than the brief one: what all properties have in common is left out.
//
//     d"X-A": "v" | #79400: d"Hello" | #79406 [plain]: d"555" |
//
// A colon is the line break and the two tabs before a value, a bar the end of a paragraph.

#ifndef PX_TESTS_SUPPORT_SHORT_FORM_H
#define PX_TESTS_SUPPORT_SHORT_FORM_H

#include <string>
#include <string_view>

namespace px::test {

inline void replaceAll(std::string *text, std::string_view from, std::string_view to) {
  for (size_t at = 0; (at = text->find(from, at)) != std::string::npos; at += to.size()) {
    text->replace(at, from.size(), to);
  }
}

// `listing` is in the brief form; the end of the document behind it is left out too.
inline std::string shortForm(std::string listing) {
  if (listing.ends_with("end")) listing.resize(listing.size() - 3);
  replaceAll(&listing, "[body] [label] ", "");
  replaceAll(&listing, " [plain] br tab tab", ":");
  replaceAll(&listing, " br [plain] tab tab", ":");
  replaceAll(&listing, " br para", " |");
  while (listing.ends_with(' ')) listing.pop_back();
  return listing;
}

}  // namespace px::test

#endif

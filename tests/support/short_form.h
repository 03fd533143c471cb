// A listing in a shorter form than the brief one: what all properties have in common is left out.
//
//     d"X-A": "v" | d"X-B" (C=d): "v" | #79400: d"Hello" | #79406 (#79428 sep): d"555" |
//
// A colon is the line break and the two tabs before a value, a bar the end of a paragraph. The
// parameters of a property without a form and the types of one that shows them stand in
// parentheses, where the default charset is in force.

#ifndef PX_TESTS_SUPPORT_SHORT_FORM_H
#define PX_TESTS_SUPPORT_SHORT_FORM_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace px::test {

// What goes in, and what is expected of it.
using Examples = std::vector<std::pair<std::string, std::string>>;

// The words of a list in which a bar stands behind each.
inline std::vector<std::string> words(std::string_view list) {
  std::vector<std::string> result;
  for (; !list.empty(); list.remove_prefix(list.find('|') + 1)) {
    result.emplace_back(list.substr(0, list.find('|')));
  }
  return result;
}

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
  replaceAll(&listing, "\" [plain] d\" ( ", "\" (");
  replaceAll(&listing, "\" d\" )\" br tab tab", "):");
  replaceAll(&listing, " [plain] d\"        ( \" ", " (");
  replaceAll(&listing, " d\" )\":", "):");
  while (listing.ends_with(' ')) listing.pop_back();
  return listing;
}

}  // namespace px::test

#endif

// The brief form of a trace: what the filter called, short enough to be written by hand.
//
//     [body] [label] #79393 br [plain] tab tab d"Ann" br para
//
//   [style]      SoUseStyle, by the name of the style: label plain sub h1 h2 h3 h4 list body
//   #id          SoEmitResourceString
//   d u w        SoSetCharset of the default, of UTF-8, of windows-1251; and, right behind it,
//   "text"       the SoEmitChar calls in a row; a code that isn't printable ASCII is <hex>
//   tab br sep   SoEmitSpecial 1, 5, 6
//   para end next  SoEmitBreak 1, 2, 3
//   anything else  the line of the trace, without "So" and blanks

#ifndef PX_TESTS_SUPPORT_BRIEF_H
#define PX_TESTS_SUPPORT_BRIEF_H

#include <string>
#include <string_view>
#include <vector>

namespace px::test {

using Trace = std::vector<std::string>;  // a line for each call, as TraceWriter writes them

std::string brief(const Trace &trace);

// The parts of a section's brief form: what VwStreamSection called, the summary with the line break
// behind it, the listing from its first paragraph style on.
struct Section {
  std::string setUp;
  std::string summary;
  std::string listing;
};

// Splits the brief form of a whole run.
std::vector<Section> sectionsOf(std::string_view brief);

}  // namespace px::test

#endif

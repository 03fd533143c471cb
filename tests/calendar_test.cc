#include <gtest/gtest.h>

#include "tests/support/runs.h"
#include "tests/support/short_form.h"

namespace px::test {
namespace {

// What stands in the table of names is tested in listing_test.cc; these are the edges of the forms.
TEST(Calendar, Forms) {
  const std::string due = R"([body] [label] #79368 br [plain] tab tab d"x" br para)";
  const Examples cases = {
      {"DALARM:;;;d\n",
       R"([list] [label] #79367 br [plain] [sub] tab #79359 [plain] tab d"d" br para)"},
      {"MALARM:;;;;;f\n", "[list] [label] #79374 br [plain] para"},
      {"ATTENDEE;EXPECT=x;RSVP=y;STATUS=s;ROLE=r:a\nATTENDEE;RSVP=y:b\n",
       R"([list] [label] #79360 tab tab d"a" d br [sub] tab #79404 [plain] tab d"r" br )"
       R"([sub] tab #85564 [plain] tab d"s" br [sub] tab #79385 [plain] tab d"y" br )"
       R"([sub] tab #79384 [plain] tab d"x" br para )"
       R"([list] [label] #79360 tab tab d"b" d br [sub] tab #79385 [plain] tab d"y" br para)"},
      {"ATTENDEE;CHARSET=utf-8:\n", "[list] [label] #79360 tab tab u d u d br para"},
      {"CATEGORIES:a;;b\nDUE:x\n",
       R"([body] [label] #85562 br [plain] tab tab d"a" br tab tab d"b" br para )" + due},
      {"RDATE:1;;;;;;7;8;9\nDUE:x\n",
       R"([body] [label] #79378 br [plain] tab tab d"1" br tab tab d"7" br para )" + due},
      // Only binary and Base64 together make an attachment.
      {"ATTACH;BASE64:QUJD\nATTACH;BINARY:QUJD\n",
       R"([body] [label] #79361 br [plain] tab tab d"QUJD" br para )"
       R"([body] [label] #79361 br [plain] tab tab d"QUJD" br para)"},
      {"ATTACH;BINARY;QUOTED-PRINTABLE:=41\nATTACH;URL;BASE64:u\n",
       R"([body] [label] #79361 br [plain] tab tab d"A" br para )"
       R"([body] [label] #79361 br [plain] tab tab d"u" br para)"},
  };
  for (const auto &[lines, expected] : cases) {
    EXPECT_EQ(listing(lines, VcardFormatVcalendar), expected) << lines;
  }
}

}  // namespace
}  // namespace px::test

#include <gtest/gtest.h>

#include "tests/support/runs.h"
#include "tests/support/short_form.h"

namespace px::test {
namespace {

const std::string kNoTel = " [h4] para [h4] para [h4] br para br";
const std::string kNoMail = " para [h4] para [h4] br para br";

void expectSummaries(const Examples &examples) {
  for (const auto &[lines, expected] : examples) EXPECT_EQ(summary(lines), expected) << lines;
}

TEST(Summary, WorkedOrders) {
  expectSummaries({
      {"", "[h1]" + kNoTel},
      {"FN:Ann\r\nTITLE:Boss\r\nORG:Acme;Sales\r\nADR:;;Main;Town;ST;123;USA\r\nTEL;HOME:555\r\n"
       "EMAIL:ann\r\nURL:u\r\n",
       R"([h1] d"Ann" para )"
       R"([h2] d"Boss" para )"
       R"([h3] d"Acme" br d"Sales" br para )"
       R"([h4] d"Main" br d"Town" d", " d"ST" d"   " d"123" br d"USA" br br para )"
       R"-([h4] d"555" d"        ( " #79428 sep d" )" br para )-"
       R"([h4] d"ann" br para )"
       R"([h4] d"u" br para br)"},
  });
}

TEST(Summary, CardLines) {
  expectSummaries({
      {"N:a;b;c;d;e;f\n", R"([h1] d"d" sep d"b" sep d"c" sep d"a" sep d"e" para)" + kNoTel},
      {"N:\n", "[h1] d sep d sep d sep d sep d para" + kNoTel},
      {"FN:\nN:a\n", "[h1] d para" + kNoTel},
      {"ORG:a;;b;c;d;e;f\n",
       R"([h1] [h3] d"a" br d"b" br d"c" br d"d" br d"e" br d"f" br para)" + kNoTel},
      {"TEL:  5\nTEL;TYPE=X-A:6\n",
       R"-([h1] [h4] d"5" br d"6" d"        ( " d sep d" )" br)-" + kNoMail},
      {"EMAIL:a\nEMAIL;INTERNET:b\nURL:c\nURL:d\n",
       R"-([h1] [h4] para [h4] d"a" br d"b" d"        ( " #79446 sep d" )" br para )-"
       R"([h4] d"c" d"d" br para br)"},
  });
}

TEST(Summary, Addresses) {
  expectSummaries({
      // One source hides those behind it.
      {"ADR;HOME:d\n", R"([h1] [h4] d"d" br br para)" + kNoTel},
      {"ADR:d\nADR;INTL:c\n", R"([h1] [h4] d"c" br br para)" + kNoTel},
      {"ADR:d\nADR;INTL:c\nLABEL;HOME:b\n", R"([h1] [h4] d"b" br para)" + kNoTel},
      {"ADR;INTL:c\nLABEL:b\nLABEL;INTL:a\n", R"([h1] [h4] d"a" br para)" + kNoTel},
      // Locality, region and postal code share a line as far as they follow each other.
      {"ADR:p;x;s;T;R;C;y\n",
       R"([h1] [h4] d"p" br d"x" br d"s" br d"T" d", " d"R" d"   " d"C" br d"y" br br para)" +
           kNoTel},
      {"ADR:;;;T;R\n", R"([h1] [h4] d"T" d", " d"R" br br para)" + kNoTel},
      {"ADR:;;;T;;C\n", R"([h1] [h4] d"T" br d"C" br br para)" + kNoTel},
      {"ADR:;;;;R;C\n", R"([h1] [h4] d"R" d"   " d"C" br br para)" + kNoTel},
      {"ADR:\n", R"([h1] [h4] br para)" + kNoTel},
  });
}

TEST(Summary, Calendar) {
  EXPECT_EQ(summary("STATUS:d\nDTSTART:c\nLOCATION:b\nSUMMARY: a\n", VcardFormatVcalendar),
            R"([h2] d"a" para [h2] d"b" para [h2] d"c" para [h2] d"d" para br)");
  EXPECT_EQ(summary("SUMMARY:a\nX;CHARSET=utf-8:b\n", VcardFormatVcalendar),
            R"([h2] u"a" d para br)");
}

TEST(Summary, CharsetAndEncodingHoldOn) {
  expectSummaries({
      {"FN;CHARSET=utf-8:a\nTITLE;CHARSET=windows-1251:b\nNOTE;CHARSET=utf-8:x\nTEL:5\nURL:u\n",
       R"([h1] u"a" d para [h2] w"b" d para [h4] w"5" d br para [h4] para [h4] w"u" d br para br)"},
      {"TEL:5\nNOTE;CHARSET=utf-8:x\n", R"([h1] [h4] u"5" d br)" + kNoMail},
      {"N;QUOTED-PRINTABLE:=41\nORG;QUOTED-PRINTABLE:=42\nADR;QUOTED-PRINTABLE:=43\n",
       R"([h1] d sep d sep d sep d"=41" sep d para [h3] d"=42" br para [h4] d"=43" br br para)" +
           kNoTel},
      {"TITLE;QUOTED-PRINTABLE:t\nORG:=41=3B;b\nADR:=43\n",
       R"([h1] [h2] d"t" para [h3] d"A;" br d"b" br para [h4] d"C" br br para)" + kNoTel},
      {"FN;QUOTED-PRINTABLE:f\nTITLE:=41\nORG:=42\n",
       R"([h1] d"f" para [h2] d"=41" para [h3] d"B" br para)" + kNoTel},
      // In a quoted-printable value the bytes of a UTF-8 form can be escapes.
      {"TITLE;CHARSET=utf-8;QUOTED-PRINTABLE:=C3=A9=0Ab\n",
       R"([h1] [h2] u"<E9>" br "b" d para)" + kNoTel},
      {"FN;QUOTED-PRINTABLE:f\nTITLE;CHARSET=utf-8:\xC3=A9\n",
       R"([h1] d"f" para [h2] u"<E9>" d para)" + kNoTel},
  });

  // Parameters behind the last line are in force at the start.
  const std::string tail = "ORG:=42\nX;QUOTED-PRINTABLE;\n";
  EXPECT_EQ(sections("BEGIN:VCARD\nN:=41;b\n" + tail)[0].summary,
            R"([h1] d sep d"b" sep d sep d"A" sep d para [h3] d"B" br para)" + kNoTel);
  EXPECT_EQ(sections("BEGIN:VCARD\nFN:=41\n" + tail)[0].summary,
            R"([h1] d"=41" para [h3] d"=42" br para)" + kNoTel);
}

// What the last step left is in force on the first line of the listing.
TEST(Summary, LeavesItsTraces) {
  const std::string note = "[body] [label] #79400 br [plain] tab tab ";
  const std::string tel = R"-([body] [label] #79406 [plain] d"        ( " #79429 sep )-";
  EXPECT_TRUE(listing("TEL;WORK:5\nEMAIL;INTERNET:a\n")
                  .starts_with(tel + R"-(#79446 sep d" )" br [plain])-"));
  EXPECT_TRUE(listing("NOTE:=41\nURL;QUOTED-PRINTABLE:u\n").starts_with(note + R"(d"A" br para)"));
  EXPECT_TRUE(listing("NOTE:a\nFN;CHARSET=utf-8:b\n").starts_with(note + R"(u"a" d br para)"));

  // The end of the input, met in a soft line break, ends the reading of all that follows.
  const auto ended = sections("BEGIN:VCARD\nTEL;QUOTED-PRINTABLE:5\nTITLE;QUOTED-PRINTABLE:a=\r");
  EXPECT_EQ(ended[0].summary, R"([h1] [h2] d"a<FF>" para [h4] d br)" + kNoMail);
  EXPECT_EQ(ended[0].listing, "end");
}

}  // namespace
}  // namespace px::test

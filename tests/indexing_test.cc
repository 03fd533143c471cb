#include <gtest/gtest.h>

#include "tests/support/runs.h"
#include "tests/support/short_form.h"

namespace px::test {
namespace {

// The ends of a summary without telephone numbers, without mail addresses.
const std::string kNoTel = " [h4] para [h4] para [h4] br para br";
const std::string kNoMail = " para [h4] para [h4] br para br";

void expectSummaries(const Examples &examples) {
  for (const auto &[lines, expected] : examples) EXPECT_EQ(summary(lines), expected) << lines;
}

// The first line gives the position, the last one mostly the encoding and the charset.
TEST(Indexing, CompanionsOfAPosition) {
  const Examples cases = {
      {"FN:=41\nFN;QUOTED-PRINTABLE;CHARSET=utf-8:x\n", R"([h1] u"A" d para)"},
      {"TITLE:=41\nTITLE;QUOTED-PRINTABLE;CHARSET=utf-8:x\n", R"([h1] [h2] u"A" d para)"},
      {"N:a\nN;CHARSET=utf-8:x\n", R"([h1] u d sep u d sep u d sep u"a" d sep u d para)"},
      {"ORG:a\nORG;CHARSET=utf-8:x\n", R"([h1] [h3] u"a" d br para)"},
      {"LABEL:=41\nLABEL;QUOTED-PRINTABLE;CHARSET=utf-8:x\n", R"([h1] [h4] u"A" d br para)"},
      {"LABEL;INTL:a\nLABEL;INTL;CHARSET=utf-8:x\n", R"([h1] [h4] u"a" d br para)"},
      // The encoding is shared by the two classes of LABEL, the charset isn't.
      {"LABEL;INTL:=41\nLABEL;QUOTED-PRINTABLE;CHARSET=utf-8:x\n", R"([h1] [h4] d"A" br para)"},
      // Of ADR the first line of each class gives all.
      {"ADR:a\nADR;CHARSET=utf-8:x\n", R"([h1] [h4] d"a" br br para)"},
      {"ADR;INTL:a\nADR;INTL;CHARSET=utf-8:x\n", R"([h1] [h4] d"a" br br para)"},
      {"ADR:x\nADR;INTL;CHARSET=utf-8:a\n", R"([h1] [h4] u"a" d br br para)"},
  };
  for (const auto &[lines, expected] : cases) {
    EXPECT_EQ(summary(lines + "X;CHARSET=windows-1251:\n"), expected + kNoTel) << lines;
  }
}

TEST(Indexing, TenPlaces) {
  std::string lines, tel, url;
  for (const std::string v : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"}) {
    lines += "TEL:" + v + "\nEMAIL:" + v + "\nURL:" + v + "\n";
    if (v > "j") continue;
    tel += " d\"" + v + "\" br";
    url += " d\"" + v + "\"";
  }
  EXPECT_EQ(summary(lines),
            "[h1] [h4]" + tel + " para [h4]" + tel + " para [h4]" + url + " br para br");
}

// Values are left to the scanner, which takes them for content lines.
TEST(Indexing, ValuesReadAsLines) {
  expectSummaries({
      {"TITLE:a.tel:9\n", R"([h1] [h2] d"a.tel:9" para [h4] d"9" br)" + kNoMail},
      {"URL:http://x;y\nTEL:5\n",
       R"([h1] [h4] d"5" br para [h4] para [h4] d"http://x;y" br para br)"},
      {"ORG:version:3.0\nTITLE:a\\,b\n",
       R"([h1] [h2] d"a,b" para [h3] d"version:3.0" br para)" + kNoTel},
      {"ORG:end:x\nFN:a\n", R"([h1] [h3] d"end:x" br para)" + kNoTel},
      {"FN;QUOTED-PRINTABLE:a=\r\nTEL:5\r\n", R"([h1] d"aTEL:5" para [h4] d"5" br)" + kNoMail},
      // Fields count as parameters of the next line.
      {"N:a;home;b\nTEL:5\nTEL:6\n", R"-([h1] d sep d"home" sep d"b" sep d"a" sep d para )-"
                                     R"-([h4] d"5" d"        ( " #79428 sep d" )" br d"6" br)-" +
                                         kNoMail},
      {"ORG:a;quoted-printable;b\nTEL:=41\n",
       R"([h1] [h3] d"a" br d"quoted-printable" br d"b" br para [h4] d"A" br)" + kNoMail},
      // A semicolon at the end costs the next line.
      {"N:Doe;\nFN:Ann\nTEL:5\n",
       R"([h1] d sep d sep d sep d"Doe" sep d para [h4] d"5" br)" + kNoMail},
      {"ADR:a;\nTITLE:t\nTEL:5\n", R"([h1] [h4] d"a" br br para [h4] d"5" br)" + kNoMail},
      {"FN:\nTEL:5\n", R"([h1] d para [h4] d"5" br)" + kNoMail},
  });
}

TEST(Indexing, OtherLines) {
  expectSummaries({
      {"TEL;QUOTED-PRINTABLE;WORK:=41\na.b.TEL;HOME:=41\nEMAIL:=41\n"
       "EMAIL;QUOTED-PRINTABLE;PREF:=41\nURL;QUOTED-PRINTABLE:=41\nURL:=41\n",
       R"-([h1] [h4] d"A" d"        ( " #79429 sep d" )" br d"=41" )-"
       R"-(d"        ( " #79428 sep d" )" br para [h4] d"=41" br )-"
       R"-(d"A" d"        ( " #79430 sep d" )" br para [h4] d"A" d"=41" br para br)-"},
      {":FN:a\nNOTE:TEL:5\nSUMMARY:b\nLOCATION:c\nDTSTART:d\nSTATUS:e\n", "[h1]" + kNoTel},
      {"BEGIN:VCARD\nFN:a\nitem.END;X:VCARD\nTITLE:t\n", R"([h1] d"a" para)" + kNoTel},
      // A charset stays in force, but in version 2.0, where it is the line's own.
      {"NOTE;CHARSET=utf-8:x\nFN:a\nTITLE;CHARSET=windows-1251:b\nORG:c\n",
       R"([h1] u"a" d para [h2] w"b" d para [h3] w"c" d br para)" + kNoTel},
      {"VERSION:2.0\nFN;CHARSET=windows-1251:a\nTITLE:\xC3\xA9\n",
       R"([h1] w"a" d para [h2] u"<E9>" d para)" + kNoTel},
  });
}

TEST(Indexing, Calendar) {
  const Examples cases = {
      {"SUMMARY:END:a\nLOCATION:b;quoted-printable;c\nDTSTART:status:d\nSTATUS:=41\n",
       R"([h2] d"END:a" para [h2] d"b;quoted-printable;c" para [h2] d"status:d" para )"
       R"([h2] d"=41" para br)"},
      {"SUMMARY;QUOTED-PRINTABLE:a=\r\nSTATUS:b\r\n", R"([h2] d"aSTATUS:b" para br)"},
      {"FN:a\nN:b\nTEL:5\nEND:x\nSUMMARY:c\n", "br"},
      {"VERSION:3.0\nSUMMARY:a\\,b\n", R"([h2] d"a,b" para br)"},
  };
  for (const auto &[lines, expected] : cases) {
    EXPECT_EQ(summary(lines, VcardFormatVcalendar), expected) << lines;
  }
  for (const std::string name : {"SUMMARY", "LOCATION", "DTSTART", "STATUS"}) {
    const std::string lines = name + ":=41\n" + name + ";QUOTED-PRINTABLE:x\n";
    EXPECT_EQ(summary(lines, VcardFormatVcalendar), R"([h2] d"A" para br)") << name;
  }
}

}  // namespace
}  // namespace px::test

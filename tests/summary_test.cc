#include "tests/support/runs.h"

namespace px::test {
namespace {

// The ends of a summary without telephone numbers, without mail addresses.
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

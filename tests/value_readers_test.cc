// Reading values: fields, the version, the end of a skipped value, and the two decoders.

#include "tests/support/runs.h"

namespace px::test {
namespace {

const std::string x255(255, 'x');
const std::string quoted = '"' + x255 + '"';

// The seven fields of an address, parted by bars. The line behind it, which must come out whole,
// is left out.
std::string fields(const std::string &line, int version = 1) {
  const std::string start = version == 1 ? "" : "VERSION:" + std::to_string(version) + ".0\n";
  std::string text = shortForm(listing(start + "ADR" + line + "\nX-A:y\n"));
  for (int label = 79417; label <= 79423; ++label) {
    replaceAll(&text, " br [sub] tab #" + std::to_string(label) + " [plain] tab d", "|");
  }
  text.erase(0, text.find("plain]|") + 7);
  replaceAll(&text, " | d\"X-A\": \"y\" |", "");
  return text;
}

TEST(Fields, LogicalForm) {
  const struct {
    std::string line, fields, atVersion3 = fields;
  } cases[] = {
      {":a;;c;", R"("a"||"c"||||)"},
      {":a;b;c;d;e;f;g;h:i;j\n k", R"("a"|"b"|"c"|"d"|"e"|"f"|"g")"},
      {": a b ;\t;  c", R"("a b "||"c"||||)"},
      {":" + x255 + ";" + x255 + "yyy\n z;c", quoted + "|" + quoted + "|\"c\"||||"},
      {":a\n b;\n c", R"("a b"|"c"|||||)", R"("ab"|"c"|||||)"},
      {R"(:a\;b\,c\nd\\)", R"("a<5C>"|"b<5C>,c<5C>nd<5C><5C>"|||||)",
       R"("a"|"b,c" br tab tab "d<5C>"|||||)"},
      {";BASE64:a=41;b\xFF", R"("a=41"|"b<FF>"|||||)"},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(fields(c.line), c.fields) << c.line;
    EXPECT_EQ(fields(c.line, 3), c.atVersion3) << c.line;
  }
}

TEST(Fields, QuotedPrintableForm) {
  const std::string noMore = "|||||| | ";
  const Examples cases = {
      {"", "||||||"},
      {" a ;=20b", R"(" a "|" b"|||||)"},
      {"a=3Bb;c\\;=5c", R"("a;b"|"c<5C>"|"<5C>"||||)"},
      {"a=0Db=0Ac=FF", R"("ab" br tab tab "c<FF>"||||||)"},
      {"a=\r\n;b;c=\n=3B;;d", R"("a;b"|"c;"||"d"|||)"},
      {"a\r\n b:c", R"("a"|||||| | d"b": "c")"},
      {"a;b;c;d;e;f;g;h:=\n;i:j", R"("a"|"b"|"c"|"d"|"e"|"f"|"g")"},
      {x255 + "y=3B=\nyy;b", quoted + "|\"b\"|||||"},
      {";;;;;;" + x255 + "yy", "||||||" + quoted},
      // Behind a full field an escaped line end is one.
      {x255 + "y=0Ab:c", quoted + noMore + R"(d"b": "c")"},
      {x255 + "=0Db:c", quoted + noMore + R"(d"b": "c")"},
  };
  for (const auto &[value, expected] : cases) {
    EXPECT_EQ(fields(";QUOTED-PRINTABLE:" + value, 3), expected) << value;
  }
  // The end of the input ends a value, and a raw byte 0xFF reads as one.
  for (const std::string end : {"\xFF\nX-A:y\nEND:VCARD\nBEGIN:VCARD\n", ""}) {
    for (const std::string &field : {std::string("a"), x255, x255 + "y"}) {
      const std::string bytes = "BEGIN:VCARD\nADR;QUOTED-PRINTABLE:;;;;;;" + field + end;
      const std::string text = brief(run(bytes, VcardFormatVcard, false).trace);
      EXPECT_TRUE(text.ends_with(" tab d\"" + field.substr(0, 255) + "\" br para end")) << text;
    }
  }
}

TEST(Version, Numbers) {
  // Lines, with a bar behind each example, and what the version makes of a fold and an escape.
  const Examples cases = {
      {"VERSION:2.1\n|VERSION:4.0\n|VERSION:2\n|VERSION:\n|VERSION: 3.0\n|VERSION:3.0 \n|"
       "VERSION:3.00\n|X-VERSION:3.0\n|VERSION:3,0\n|VERSION:3\n .0\n|"
       "VERSION:3.0\nVERSION:2.1\n|VERSION;QUOTED-PRINTABLE:3.0=0A\n|"
       "VERSION;QUOTED-PRINTABLE:3.0\xFF\n|VERSION;QUOTED-PRINTABLE:3.=\n =30\n|"
       "VERSION:3.0" +
           std::string(300, '0') + "\n|",
       R"(d"a b<5C>,")"},
      {"VERSION:2.0\n|VERSION:3.0\nVERSION:2.0\n|VERSION;QUOTED-PRINTABLE:=32=\r\n.0\n|",
       R"(u"ab," d)"},
      {"VERSION:3.0\n|version:3.0\n|g.VERSION:3.0\n|VERSION:3.0\nVERSION:3\n .0\n|"
       "VERSION;QUOTED-PRINTABLE:3.0\n|VERSION;QUOTED-PRINTABLE:=33=0D.=\r\n0\n|",
       R"(d"ab,")"},
  };
  for (const auto &[examples, out] : cases) {
    for (const std::string &lines : words(examples)) {
      for (const int16_t format : {VcardFormatVcard, VcardFormatVcalendar}) {
        const std::string text = shortForm(listing(lines + "NOTE:a\n b\\,\n", format));
        EXPECT_EQ(text.substr(text.rfind('#')), "#79400: " + out + " |") << lines;
      }
    }
  }
}

// Whether the summary sees the FN line behind, or in, a value that nobody reads.
TEST(SkippedValue, WhereItEnds) {
  for (size_t n = 0; n < 50; ++n) {  // wherever a search in steps leaves off
    const std::string xs(n, 'x');
    EXPECT_EQ(summary("X:" + xs + "\nFN:" + xs + "\nNOTE:\n").find("[h1] d"), 0U) << n;
  }
  const std::pair<std::string, bool> cases[] = {
      // a bar stands behind each example
      {"X:x\n FN:a\n|X;QUOTED-PRINTABLE:x=\nFN:a\n|X;QUOTED-PRINTABLE:x\xFF=\nFN:a\n|", false},
      {"X;BASE64:AAAA\n\tAAAA\n\nFN:a\n|X:=\nFN:a\n|X;QUOTED-PRINTABLE:x=0A\n FN:a\n|", true}};
  for (const auto &[examples, seen] : cases) {
    for (const std::string &lines : words(examples)) {
      EXPECT_EQ(summary(lines).find("[h1] d\"a\"") != std::string::npos, seen) << lines;
    }
  }
}

// However CR, LF, blanks and letters follow each other in a value that nobody reads, it ends in the
// same place for a search of a large buffer and for single bytes.
TEST(SkippedValue, EveryMix) {
  constexpr std::string_view bytes = "\r\n xF";
  for (const std::string head : {"X:", "X;QUOTED-PRINTABLE:=", "X;BASE64:\n A"}) {
    for (size_t number = 0; number < 5 * 5 * 5 * 5; ++number) {
      std::string mix;
      for (size_t rest = number; mix.size() < 4; rest /= 5) mix += bytes[rest % 5];
      const std::string file = "BEGIN:VCARD\n" + head + mix + "FN:a\nEND:VCARD\n";
      const Trace large = runOnce(file, VcardFormatVcard).trace;
      const Trace single = runOnce(file, VcardFormatVcard, {.largestRead = 1}).trace;
      expectSameCalls(large, single, "single bytes of " + testing::PrintToString(file));
      if (HasFailure()) return;
    }
  }
}

// The text of a note up to the end of the input.
std::string note(const std::string &parameters, const std::string &value) {
  const auto all = sections("BEGIN:VCARD\r\nNOTE" + parameters + ":" + value);
  const std::string text = all.size() == 1 ? shortForm(all[0].listing) : "";
  return text.substr(std::min(text.size(), sizeof "#79400:"));
}

TEST(Decoders, QuotedPrintable) {
  const Examples cases = {
      {"=41=c3=C3=aF=9f=4\nb", R"(d"A<C3><C3><AF><9F>Ob" |)"},
      {"=G1=1G=gg=@0=`0=/0=:0=\xC1z", R"(d"<F1><1F><FF><F0><F0><F0><F0><FF>" |)"},
      // A soft line break: an LF, or CRs with or without one. What stands behind it is data.
      {"a=\nb=\r\nc=\rd=\r\r\r\ne", R"(d"abcde" |)"},
      {"a=\n=42=\r\n=43=\r=44=\n=\nx=\r=\r5", R"(d"aBCD<FF><F5>" |)"},
      {"a=\r\n\rb=\n\nc", R"(d"ab" br tab tab "c" |)"},
      // The end of the input. Behind a CR it is told, so the second pass has nothing to read.
      {"a=\n", R"(d"a<FF>" |)"},
      {"a=", R"(d"a<FF>" |)"},
      {"a=4", R"(d"aO" |)"},
      {"a=\r", ""},
      {"a=\r\r\xFF\nTEL:5\nEND:VCARD\n", ""},
  };
  for (const auto &[value, out] : cases) EXPECT_EQ(note(";QUOTED-PRINTABLE", value), out) << value;
}

// What stands first in a value is the same character in UTF-8 as without a set, if it is ASCII.
TEST(Decoders, AsciiFirst) {
  for (int c = 0; c < 0x80; ++c) {
    if (c == '\r' || c == '\n') continue;
    const std::string value = std::string(1, char(c)) + "z\r\n";
    std::string plain = listing("NOTE:" + value), utf8 = listing("NOTE;CHARSET=utf-8:" + value);
    replaceAll(&utf8, "u\"", "d\"");
    replaceAll(&utf8, "\" d", "\"");
    replaceAll(&plain, "\" d", "\"");
    EXPECT_EQ(utf8, plain) << c;
  }
}

TEST(Decoders, Utf8) {
  const struct {
    std::string value;
    const char *plain, *quotedPrintable = plain;  // null: not tried
  } cases[] = {
      {"\xC3\xA9\xDF\xBF\xE2\x82\xAC\xEF\xBF\xBD\xED\xA0\x80", "<E9><7FF><20AC><FFFD><D800>"},
      {"\xC1\x81\xE0\x80\x8A\xE0\x80\xC2", "A\" br \"<2>"},
      // Any byte goes on with a form, also a line end; its top bits don't count.
      {"\xC3z\xE2zz\xC3\r.", "<FA><2EBA><CD>."},
      // Only a quoted-printable line has escapes inside a form.
      {"\xC3=A9\xE2=\xAC.z", "<FD>A9<2F6C>.z", "<E9><2FFA>"},
      {"\xE2\x82=zz", "<20BD>zz", "<20BF>"},
      {"=E2=\r\n=82=\n=AC=C3=\r\nz.", nullptr, "<20AC><FA>."},
      // Other forms; the rest of a long one is dropped, escapes by their bytes.
      {"\x80.\xBF.\xF0\x9F\x98\x80.", "<FFFF>.<FFFF>.<FFFF>."},
      {"\xF8zzzz.\xFCzzzzz.\xFEzzzzzz.", "<FFFF>.<FFFF>.<FFFF>."},
      {"\xFFzzzzzzz.", "<FFFF>.", nullptr},
      {"=FFzzzzzzz.=F0=9F=98=80.", nullptr, "<FFFF>.<FFFF><FFFF><FFFF>."},
      // The end of the input.
      {".\xC3", ".<FF>"},
      {".\xE2\x82", ".<20BF>"},
  };
  for (const auto &c : cases) {
    for (const bool qp : {false, true}) {
      const char *expected = qp ? c.quotedPrintable : c.plain;
      if (expected == nullptr) continue;
      const std::string parameters = qp ? ";CHARSET=utf-8;QUOTED-PRINTABLE" : ";CHARSET=utf-8";
      EXPECT_EQ(note(parameters, c.value), "u\"" + std::string(expected) + "\" d |") << c.value;
    }
  }
}

}  // namespace
}  // namespace px::test

// What the parameters of a line mean for its value.

#include <sstream>

#include "tests/support/runs.h"

namespace px::test {
namespace {

const std::string kOtherLine =
    "X-A;TYPE=X-Z;HOME;VALUE=X-Z;BASE64;ROLE=z;STATUS=z;RSVP=z;EXPECT=z;X-FILENAME=z:\n";

// Checks how the output of a property ends. Each example is an ending and the parameters that lead
// to it, with blanks between them. The line before the property leaves nothing to it.
void expectEndings(const std::string &name, const std::string &value, const Examples &examples,
                   int16_t format = VcardFormatVcard) {
  for (const auto &[ending, all] : examples) {
    std::istringstream list(all);
    for (std::string parameters; list >> parameters;) {
      const std::string line = name + parameters + ':' + value + '\n';
      const std::string text = shortForm(listing(kOtherLine + line, format));
      EXPECT_TRUE(text.ends_with(ending)) << line << text;
    }
  }
}

TEST(Parameters, Types) {
  expectEndings(
      "TEL", "5",
      {{R"(#79406 (#79428 sep #79431 sep): d"5" |)",
        ";HOME;VOICE ;TYPE=VOICE;type=HoMe ;VOICE;LANGUAGE=FAX;HOME"},
       {R"(#79406 (#79428 sep): d"5" |)", ";TYPE=HOME;HOME"},
       // Whole names only, of their own table; a comma is no separator.
       {R"(#79406 [plain]: d"5" |)",
        ";TYPE=HOME,VOICE ;HOMES;HOM;H\xCFME;TYPE=a=home;home.x ;VALUE=HOME;ENCODING=HOME "
        ";FOO=HOME;TYPES=HOME;CHARSET=HOME;X-A=HOME ;home12345678901234567890123456789012;x- "
        ";;TYPE= ;X-A;TYPE=X;TYPE=XA;TYPE=-X-"},
       // Of the extensions the last one shows, unless another TYPE stands behind it.
       {R"(#79406 (d"X-A" sep): d"5" |)", ";TYPE=X-A ;TYPE=X-B;TYPE=X-A ;TYPE=X-A;X-B"},
       {R"(#79406 (d"x-" sep): d"5" |)", ";TYPE=x-"},
       {R"(#79406 (#79428 sep d"x-a" sep): d"5" |)", ";TYPE=x-a;HOME"},
       {R"(#79406 (#79428 sep d sep): d"5" |)", ";TYPE=X-A;TYPE=HOME"},
       {R"(#79406 (d sep): d"5" |)", ";TYPE=X-A;TYPE=FOO ;TYPE=X-A;TYPE="}});
}

TEST(Parameters, Encodings) {
  expectEndings(
      "KEY", "=4A",
      {{R"(d"=4A" |)",
        ";ENCODING=7BIT ;8BIT ;ENCODING=UTF-8 ;UTF-8 ;ENCODING=B ;ENCODING=QP ;ENCODING= "
        ";ENCODING=QUOTED-PRINTABLES ;TYPE=BASE64 ;VALUE=BASE64 ;X-BASE64 ;ENCODINGS=BASE64 "
        ";E=BASE64 ;BASE64;7BIT ;ENCODING=BASE64;ENCODING=X-A "
        ";ENCODING=QUOTED-PRINTABLE;ENCODING=utf-8"},
       {R"(d"J" |)",
        ";QUOTED-PRINTABLE ;Quoted-Printable ;ENCODING=QUOTED-PRINTABLE ;encoding=quoted-printable "
        ";BASE64;QUOTED-PRINTABLE ;QUOTED-PRINTABLE;ENCODING=FOO ;QUOTED-PRINTABLE;ENCODING= "
        ";QUOTED-PRINTABLE;X-A ;ENCODING=QUOTED-PRINTABLE;TYPE=BASE64;VALUE=7BIT"},
       {",0xFFFFFFFF}) |",  // an object's record
        ";BASE64 ;base64 ;ENCODING=BASE64 ;ENCODING=X-A;Base64 ;7BIT;ENCODING=base64"}});
}

TEST(Parameters, ValueKinds) {
  expectEndings(
      "PHOTO", "x",
      {{R"(#79386 tab [plain] d"x" br)",
        ";URL ;url ;VALUE=URL ;VALUE=INLINE;VALUE=url ;URL;VALUE=FOO ;URL;VALUE= ;URL;X-A"},
       {R"(#79387 tab [plain] d"x" br)",
        ";CID ;VALUE=cid ;CONTENT-ID ;VALUE=CONTENT-ID ;VALUE=URL;CID"},
       {"[list] [sub] tab",
        ";BINARY ;VALUE=BINARY ;VALUE=X-A ;VALUE=x- ;VALUE=URL;VALUE=X-A ;URL;BINARY"},
       {R"(#79402: d"x" |)",
        ";INLINE ;VALUE=INLINE ;VALUE=URI ;VALUE=URLS ;TYPE=URL ;ENCODING=CID ;X-A ;VALUE= "
        ";BINARY;INLINE ;VALUE=X-A;VALUE=INLINE ;X-VALUE=URL"}});
}

TEST(Parameters, AttendeesAndExtensions) {
  const std::string long255(255, 'L');
  expectEndings("ATTENDEE", "v",
                {{R"(#79404 [plain] tab d"Owner" br [sub] tab #85564 [plain] tab d"a=b.c" br )"
                  R"([sub] tab #79385 [plain] tab d"x" br [sub] tab #79384 [plain] tab d""F,Y"" |)",
                  ";role=Owner;STATUS=a=b.c;Rsvp=x;EXPECT=\"F,Y\""},
                 {R"(d"v" d br [sub] tab #79404 [plain] tab d"b" |)",
                  ";ROLE=a;ROLE=b;STATUS=c;FOO=d;STATUS="},
                 {R"(d"v" d |)", ";ROLES=a;X-ROLE=b;OWNER"},
                 {"d\"" + long255 + "\" |", ";ROLE=" + long255 + "MM"}},
                VcardFormatVcalendar);
  // The last extension gives an attachment its title, if it is named so.
  expectEndings("ATTACH;BINARY;BASE64", "AA==",
                {{R"("f" EndDefinition(0x8003000C,1) |)",
                  ";X-FILENAME=f ;X-A=1;x-filename=f ;X-FILENAME=f;FOO=g;X-B"},
                 {"#79493 br EndDefinition(0x8003000C,1) |",
                  ";X-FILENAME=g;X-B=f ;X-FILENAME=f;X-=f ;FILENAME=f ;X-FILENAME"}},
                VcardFormatVcalendar);
}

}  // namespace
}  // namespace px::test

// The text view and the overview of calendars, from scripted events.

#include "host/writers/card_text.h"

#include <gtest/gtest.h>

#include "host/writers/calendar_overview.h"
#include "host/writers/dates.h"
#include "tests/support/scripted_events.h"

namespace px::test {
namespace {

// The text, after a check that the pieces in which it comes make no difference and that no line is
// wider than it may be.
std::string textOf(std::string_view script, const TextLook &look = {}) {
  std::string first;
  for (const size_t piece : {100000, 1, 3}) {
    std::string text;
    const TextSink sink = [&text](std::string_view part) {
      EXPECT_LT(part.size(), 20000U);
      text += part;
    };
    CalendarOverview overview(look, sink);
    play(script, piece, &overview);
    overview.finish();
    CardText writer(look, scriptedContentType, sink);
    play(script, piece, &writer);
    writer.finish();
    if (first.empty()) first = text;
    EXPECT_EQ(text, first) << "in pieces of " << piece;
  }
  for (std::string_view rest = first; !look.color && !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    EXPECT_LE(displayWidth(line), look.columns()) << line;
    EXPECT_FALSE(line.ends_with(' ')) << line;
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  }
  return first;
}

TEST(CardText, Card) {
  EXPECT_EQ(textOf("[VCARD 1 0 3.0]\n"
                   "Name: Zoë 山田\n"
                   "Title: Chef\n"
                   "Address: Weinbergstraße 7\n"
                   "Address: Zürich\n"
                   "Address:\n"
                   "Address: Oslo\n"
                   "Telephone/work,pref: 27\n"
                   "Telephone: 64\n"
                   "Url: http://a.example\n"
                   "Url/home: http://b.example\n"
                   "79411 VERSION: 3.0\n"
                   "0 PRODID: Mill\n"
                   "79393 FN: Zoë 山田\n"
                   "79399 N: 79412=山田|79413=Zoë|79414=|79415=Ms.\\nDr.\n"
                   "79401 ORG: 0=Mill|0=Bakery\n"
                   "79400 NOTE:   \n"
                   "79388 ADR;TYPE=home: 79417=|79419=\n"
                   "79400 NOTE: one\\n\\ntwo\\n\n"
                   "[- 2 0]\n"
                   "Entry: plain\n"
                   "Entry: lines\n"
                   "0 X: \n"),
            R"(                          plain, lines

========================================================================

Zoë 山田
========
Chef

Weinbergstraße 7
Zürich

Oslo

27 (work, preferred)
64

http://a.example
http://b.example (home)

------------------------------------------------------------------------
Name                      Zoë 山田
Name parts
             Family name  山田
              Given name  Zoë
                  Prefix  Ms.
                          Dr.
Organisation              Mill
                          Bakery
Note                      one

                          two
Version                   3.0
Product                   Mill

========================================================================

plain
lines
)");
}

TEST(CardText, Calendar) {
  EXPECT_EQ(textOf("[VCALENDAR 1 0]\n"
                   "0 METHOD: PUBLISH\n"
                   "[VTIMEZONE 2 1]\n"
                   "0 TZID: Oslo\n"
                   "[DAYLIGHT 3 2]\n"
                   "79382 DTSTART: 19700101T000000\n"
                   "[VEVENT 4 1]\n"
                   "Summary: Spring meeting of all the members of the society, old and new\n"
                   "Start: 20240418T190000Z\n"
                   "79382 DTSTART;TZID=Oslo: 20240418T210000\n"
                   "79360 ATTENDEE;CN=Ines;ROLE=CHAIR: ines@example.org\n"
                   "79360 ATTENDEE: paul@example.org\n"
                   "late RSVP=TRUE\n"
                   "[VALARM 5 4]\n"
                   "0 ACTION: DISPLAY\n"
                   "79362 AALARM: 79355=20240418T1800Z|79356=PT5M\n"
                   "[VTODO 6 1]\n"
                   "Summary: Seeds\n"
                   "Location: Garden\n"),
            R"(2024-04-18 19:00 UTC      Spring meeting of all the members of the society, old…
                          Seeds, Garden

========================================================================

Method                    PUBLISH

========================================================================

Spring meeting of all the members of the society, old and new
=============================================================
2024-04-18 19:00 UTC

------------------------------------------------------------------------
Start                     2024-04-18 21:00 Oslo
Attendee                  ines@example.org
                    Name  Ines
                    Role  CHAIR
Attendee                  paul@example.org
         Reply requested  TRUE
Alarm
                  Action  DISPLAY
             Sound alarm
                Run time  2024-04-18 18:00 UTC
             Snooze time  PT5M

========================================================================

Seeds
=====
Garden
)");
}

TEST(CardText, Properties) {
  const struct {
    std::string property, label, value;
  } cases[] = {
      {"79406 item1(_$!<Home>!$_).tel;TYPE=work,main;PREF=1: 1",
       "Telephone (Home, work, main, preferred)", "1"},
      {"79400 NOTE;LANGUAGE=de;X-A=b: c", "Note (language de)", "c"},
      {"0 X-foo;A=b,c;TYPE=work;ENCODING=b: d", "X-foo (A=b,c, TYPE=work)", "d"},
      {"85562 CATEGORIES: 0=A|0=B", "Categories", "A\n                          B"},
      {"85562 CLASS: PUBLIC", "Classification", "PUBLIC"},
      {"0 X-JABBER: ann", "Jabber", "ann"},
      {"79402 PHOTO;TYPE=jpeg: <>J" + std::string(1233, 'x'), "Photo",
       "[Photo: JPEG image, 1,234 bytes]"},
      {"79402 PHOTO;TYPE=jpeg;LANGUAGE=de: me.jpg", "Photo", "me.jpg"},
      {"79395 KEY;TYPE=pgp: <>k", "Key (PGP)", "[Key: text, 1 byte]"},
      {"79361 ATTACH;TYPE=work: <a\x1B.txt>text", "Attachment", "[a\uFFFD.txt: text, 4 bytes]"},
      {"79391 BDAY;X-APPLE-OMIT-YEAR=1604: 1604-03-02\n79391 BDAY: 1604-03-02", "Birthday",
       "2 March\nBirthday                  1604-03-02"},
      {"79391 : --03", "Birthday", "March"},
      {"79391 BDAY: about 1960, in spring", "Birthday", "about 1960, in spring"},
      {"79391 BDAY: " + std::string(45, 'x') + " and so on, in May / June", "Birthday",
       std::string(45, 'x') + " and so\n                          on, in May / June"},
      {"79411 VERSION: 3.0\\n4.0", "Version", "3.0\n                          4.0"},
      {"79370 EXDATE;TZID=Oslo: 20240418T1900,20240419", "Exception dates",
       "2024-04-18 19:00, 2024-04-19 Oslo"},
      {"79378 RDATE: 20240418/20240419,T19Z/PT1H", "Recurrence dates",
       "2024-04-18/2024-04-19, 19:00 UTC/PT1H"},
      {"0 X\x7F\xE2\x80\xAE: \xC2\x9B", "X\uFFFD\uFFFD", "\uFFFD"},
  };
  for (const auto &[property, label, value] : cases) {
    const std::string gap = label.size() <= 24 ? std::string(26 - displayWidth(label), ' ')
                                               : "\n" + std::string(26, ' ');
    const std::string text = textOf("[VCARD 1 0]\n" + property + "\n");
    EXPECT_EQ(text, label + gap + value + "\n");
  }
  // A version that is no version isn't held for the section's end.
  const std::string text = textOf("[VCARD 1 0]\n79411 VERSION: " + std::string(600, 'v') +
                                  "\n79411 VERSION: 3.0\n79400 NOTE: n\n");
  EXPECT_EQ(std::count(text.begin(), text.end(), 'v'), 600);
  EXPECT_TRUE(text.ends_with(" n\nVersion                   3.0\n")) << text;
  EXPECT_EQ(textOf("[VCARD 1 0]\n79411 VERSION:\n79388 ADR: 79417=|79418=\n0 X;A=b:  \n"), "");
}

TEST(CardText, Wrapping) {
  const std::string column(26, ' ');
  const struct {
    std::string value, shown;
  } cases[] = {
      {"aaaaa bbbbb ccccc", "aaaaa bbbbb\n" + column + "ccccc"},
      {"aaaaa bbbbbbbb   ccccc", "aaaaa bbbbbbbb\n" + column + "ccccc"},
      {"aaaaaaaaaaaaaaaaaaaa b", "aaaaaaaaaaaaaa\n" + column + "aaaaaa b"},
      {"aa bbbbbbbbbbbbbbbbbbbb", "aa\n" + column + "bbbbbbbbbbbbbb\n" + column + "bbbbbb"},
      {"aaaaaaaaaaaaa山山", "aaaaaaaaaaaaa\n" + column + "山山"},
      {"aaaa 山山山山山", "aaaa 山山山山\n" + column + "山"},
      {"äääää bbbbb ñcccc", "äääää bbbbb\n" + column + "ñcccc"},
      {"ä bbbbbbbbb € ñccccccc", "ä bbbbbbbbb €\n" + column + "ñccccccc"},
      {"ääääääääääääääñcccc b", "ääääääääääääää\n" + column + "ñcccc b"},
      {"aaaaaaaaaaaaae\u0301\u0301 b", "aaaaaaaaaaaaae\u0301\u0301\n" + column + "b"},
  };
  for (const auto &[value, shown] : cases) {
    EXPECT_EQ(textOf("[VCARD 1 0]\n79400 NOTE: " + value + "\n", {.width = 40}),
              "Note" + column.substr(4) + shown + "\n");
  }
  const std::string word(200000, 'x');
  EXPECT_EQ(textOf("[VCARD 1 0]\n79400 NOTE: " + word + "\n", {.width = TextLook::Endless}),
            "Note" + column.substr(4) + word + "\n");
  const std::string parameter(100, 'b');
  EXPECT_EQ(
      textOf("[VCARD 1 0]\n0 X;A=" + parameter + ": v\n"),
      "X (A=" + parameter.substr(25) + "\n    " + parameter.substr(75) + ")\n" + column + "v\n");
  std::string marks;
  for (int i = 0; i < 50000; ++i) marks += "\u0301";
  EXPECT_EQ(textOf("[VCARD 1 0]\nTitle: a" + marks + "\n"), "a" + marks + "\n=\n");
}

TEST(CardText, Colors) {
  EXPECT_EQ(textOf("[VCARD 1 0]\nName: Ann\n79400 NOTE: n\n", {.color = true}),
            "\x1B[1mAnn\x1B[0m\n===\n\n" + std::string(72, '-') + "\n\x1B[2mNote\x1B[0m" +
                std::string(22, ' ') + "n\n");
}

TEST(Dates, Forms) {
  const struct {
    const char *text, *readable;  // null: as it stands
  } cases[] = {
      {"20240302T170455Z", "2024-03-02 17:04:55 UTC"},
      {"2024-03-02T17:00:00+01:00", "2024-03-02 17:00 +01:00"},
      {"20240302T170455.5-0130", "2024-03-02 17:04:55.5 -01:30"},
      {"20240302", "2024-03-02"},
      {"2024-03", "2024-03"},
      {"--0302T10", "2 March 10:00"},
      {"--12-31", "31 December"},
      {"---02", "day 2"},
      {"T102200", "10:22"},
      {"2024", nullptr},
      {"202403", nullptr},
      {"20241302", nullptr},
      {"20240302T", nullptr},
      {"20240302T1761", nullptr},
      {"20240302T17:", nullptr},
      {"20240302T170455Zz", nullptr},
      {"--03-", nullptr},
      {"", nullptr},
  };
  for (const auto &[text, readable] : cases) {
    EXPECT_EQ(readableDate(text).value_or("as it stands"), readable ? readable : "as it stands")
        << text;
  }
}

}  // namespace
}  // namespace px::test

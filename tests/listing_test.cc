#include <sstream>

#include "tests/support/runs.h"

namespace px::test {
namespace {

std::string generic(const std::string &name, const std::string &value) {
  return "[body] [label] d\"" + name + "\" [plain] br tab tab \"" + value + "\" br para";
}

TEST(Listing, WorkedOrders) {
  const Examples cases = {
      {"", ""},
      {"FN:Ann\r\n", R"([body] [label] #79393 br [plain] tab tab d"Ann" br para)"},
      {"TEL;HOME:5\r\nwork.TEL:6\r\n",
       R"-([body] [label] #79406 [plain] d"        ( " #79428 sep d" )" br [plain] )-"
       R"(tab tab d"5" br para [body] [label] #79406 [plain] br [plain] tab tab d"6" br para)"},
      {"X-PET:Rex\r\n", generic("X-PET", "Rex")},
      {":x\r\n", R"([body] [label] d [plain] br tab tab "x" br para)"},
      {"TelX:5\nn1:6\n", generic("TelX", "5") + " " + generic("n1", "6")},
      {"REV:aa;bb:cc\n",
       R"([body] [label] #79403 br [plain] tab tab d"aa" br para )" + generic("bb", "cc")},
      {"KEY;URL:u\n", R"([body] [label] #79395 [plain] br tab tab d"u" br para)"},
      {"LOGO;VALUE=URI:u\n", R"([body] [label] #79396 br [plain] tab tab d"u" br para)"},
  };
  for (const auto &[lines, expected] : cases) EXPECT_EQ(listing(lines), expected) << lines;
}

// Three lines tell the forms apart.
struct Line {
  std::string parameters, value, decoded;
  std::vector<std::string> fields;
};
const Line kLines[] = {
    {"HOME", "a;b;c;d;e;f;g", "a;b;c;d;e;f;g", {"a", "b", "c", "d", "e", "f", "g"}},
    {"QUOTED-PRINTABLE", "=41=3Bb", "A;b", {"A;b"}},
    {"HOME;BASE64;BINARY", "QUJD", "QUJD", {"QUJD"}},
};

// What a form makes of each of them, and the names that have it, each with its label.
struct Form {
  std::string text;
  std::string names = {};  // in both formats
  std::string calendarOnly = {};
  std::string base64 = {};  // where the last line gives something else than `text`
  std::vector<int> rowIds = {};
};
const std::string kLabelled = "[body] [label] {label} br [plain] tab tab {value} br para";
const std::string kShortTyped = "[body] [label] {label} [plain] {types}tab tab {value} br para";
const std::string kAlarm = "[list] [label] {label} br [plain] {filled rows}para";
const std::vector<int> kNameIds = {79412, 79413, 79414, 79415, 79416};
const std::vector<int> kAddressIds = {79417, 79418, 79419, 79420, 79421, 79422, 79423};
const Form kForms[] = {
    {"", "begin 0 end 0 agent 0"},
    {kLabelled,
     "fn 79393 title 79407 version 79411 tz 79408 geo 79394 location 79373 note 79400 url 79410 "
     "bday 79391 role 79404 uid 79409 mailer 79398",
     "summary 79609 class 85562 dcreated 79364 completed 79365 description 79366 due 79368 "
     "dtend 79369 exdate 79370 exrule 79371 last-modified 79372 m-alarm 79374 rnum 79375 "
     "priority 79543 related-to 79377 rrule 79379 sequence 79381 dtstart 79382 status 85564 "
     "transp 79383"},
    {"[body] [label] {label} [plain] {types}[plain] tab tab {value} br para",
     "tel 79406 email 79392"},
    {kShortTyped, "label 79397"},
    {kShortTyped, "key 79395", "", "[body] [label] {label} [plain] {types}object br para"},
    {kLabelled, "logo 79396 photo 79402 sound 79405 ms-cardpicture 79402", "",
     "[body] [label] {label} br [plain] [list] [sub] tab"},
    {kLabelled, "", "attach 79361", "[body] [label] {label} br [plain] object br para"},
    {"[body] [label] {label} br [plain] tab tab {raw field} br para", "rev 79403"},
    {"[body] [label] {label} br [plain] {field lines}para", "org 79401",
     "categories 85562 rdate 79378 resources 79380"},
    {"[list] [label] {label} tab tab {value} d br para", "", "attendee 79360"},
    {"[list] [label] {label} br {rows}para", "n 79399", "", "", kNameIds},
    {"[list] [label] {label} [plain] {types}{rows}para", "adr 79388", "", "", kAddressIds},
    {kAlarm, "", "aalarm 79362", "", {79355, 79356, 79357, 79358}},
    {kAlarm, "", "malarm 79374", "", {79355, 79356, 79357, 79745, 79359}},
    {kAlarm, "", "dalarm 79367 palarm 79376", "", {79355, 79356, 79357, 79359}},
};
const Form kGeneric = {
    R"-([body] [label] d"{name}" [plain] d" ( {parameters}" d" )" br tab tab "{raw}" br para)-"};

std::string expectation(const Form &form, const std::string &name, int label, const Line &line) {
  std::string rows, filledRows, fieldLines;
  for (size_t i = 0; i < form.rowIds.size(); ++i) {
    const std::string field = i < line.fields.size() ? '"' + line.fields[i] + '"' : "";
    const std::string id = std::to_string(form.rowIds[i]);
    rows += "[sub] tab #" + id + " [plain] tab d" + field + " br ";
    if (!field.empty()) filledRows = rows;
  }
  for (const std::string &field : line.fields) fieldLines += "tab tab d\"" + field + "\" br ";
  const std::pair<std::string, std::string> words[] = {
      {"{label}", '#' + std::to_string(label)},
      {"{value}", "d\"" + line.decoded + '"'},
      {"{types}", line.parameters[0] == 'H' ? R"-(d"        ( " #79428 sep d" )" br )-" : "br "},
      {"{raw field}", "d\"" + line.value.substr(0, line.value.find(';')) + '"'},
      {"{field lines}", fieldLines},
      {"{rows}", rows},
      {"{filled rows}", filledRows},
      {"{name}", name},
      {"{parameters}", line.parameters},
      {"{raw}", line.value}};
  const bool isBase64 = &line == &kLines[2] && !form.base64.empty();
  std::string text = isBase64 ? form.base64 : form.text;
  for (const auto &[word, meaning] : words) {
    if (const size_t at = text.find(word); at != text.npos) text.replace(at, word.size(), meaning);
  }
  return text;
}

// With objects and attachments as one word.
std::string withoutRecords(const std::string &text) {
  const size_t begin = text.find("GetObjectBase");
  if (begin == text.npos) return text;
  const size_t last = std::max(text.rfind("EmitObject(") + 1, text.rfind("EndDefinition(") + 1);
  return text.substr(0, begin) + "object" + text.substr(text.find(')', last) + 1);
}

void expectForm(const Form &form, const std::string &name, int label, int16_t format) {
  for (const Line &line : kLines) {
    const std::string text = name + ';' + line.parameters + ':' + line.value + "\n";
    EXPECT_EQ(withoutRecords(listing(text, format)), expectation(form, name, label, line)) << text;
  }
}

TEST(Listing, EveryName) {
  std::string name;
  int label;
  for (const Form &form : kForms) {
    for (std::istringstream names(form.names); names >> name >> label;) {
      expectForm(form, name, label, VcardFormatVcard);
      expectForm(form, name, label, VcardFormatVcalendar);
    }
    for (std::istringstream names(form.calendarOnly); names >> name >> label;) {
      expectForm(kGeneric, name, 0, VcardFormatVcard);
      expectForm(form, name, label, VcardFormatVcalendar);
    }
  }
  expectForm(kGeneric, "x-", 0, VcardFormatVcard);
}

TEST(Listing, EveryTypeHasItsLabel) {
  std::istringstream types(
      "dom intl postal parcel home work pref voice fax msg cell pager bbs modem car isdn video aol "
      "applelink attmail cis eworld internet ibmmail mcimail powershare prodigy tlx x400 x509 pgp");
  const std::string head = "[body] [label] #79406 [plain] d\"        ( \" ";
  const std::string tail = R"-(d" )" br [plain] tab tab d"5" br para)-";
  std::string all, labels;
  int id = 79424;
  for (std::string type; types >> type;) {
    const std::string label = "#" + std::to_string(id++) + " sep ";
    EXPECT_EQ(listing("TEL;" + type + ":5\n"), head + label + tail) << type;
    all = ";" + type + all;
    labels += label;
  }
  EXPECT_EQ(listing("TEL;TYPE=X-A;GIF" + all + ":5\n"), head + labels + "d\"X-A\" sep " + tail);
  EXPECT_EQ(listing("TEL;GIF;PCM:5\n"), head + tail);
  EXPECT_EQ(listing("TEL;CHARSET=utf-8;TYPE=X-\xC3\xA9:5\n"),
            R"-([body] [label] #79406 [plain] u"        ( " d u"X-<E9>" d sep u" )" d br [plain] )-"
            R"(tab tab u"5" d br para)");
}

// What stands between the indent of the first property's value and its end.
std::string value(const std::string &lines) {
  const std::string text = listing(lines);
  const size_t begin = text.find("tab tab ") + 8;
  return text.substr(begin, text.find(" br para") - begin);
}

TEST(Listing, Values) {
  const Examples cases = {
      {"NOTE:\n", "d"},
      {"NOTE: \t\n", "d"},
      {"NOTE: \ta b \n", R"(d"a b ")"},
      {"NOTE:a\tb\xFFz\n", R"(d"a" tab "b<FF>z")"},
      {"NOTE:a\\nb\nVERSION:3.0\n", R"(d"a" br "b")"},
      {"NOTE;CHARSET=utf-8:\n", "u d"},
      {"NOTE;CHARSET=utf-8:\xC3\xA9\xE2\x82\xAC!\xEF\xBF\xBD\n", R"(u"<E9><20AC>!<FFFD>" d)"},
      {"NOTE;CHARSET=utf-8:\xF0\x9F\x98\x80!\x80?\n", R"(u"<FFFF>!<FFFF>?" d)"},
      {"NOTE;CHARSET=UTF-8:\xC3\xA9\n", R"(d"<C3><A9>")"},
      {"NOTE;CHARSET=utf-8x:\xC3\xA9\n", R"(d"<C3><A9>")"},
      {"NOTE;CHARSET=windows-1251:\xE9\n", R"(w"<E9>" d)"},
      // Quoted-printable.
      {"NOTE;QUOTED-PRINTABLE: a=0D=0Ab=09=3d\n", R"(d" a" br tab tab "b" tab "=")"},
      {"NOTE;QUOTED-PRINTABLE:a=\r\n b=FF\xE9\n", R"(d"a b<FF><E9>")"},
      {"NOTE;CHARSET=utf-8;QUOTED-PRINTABLE:=E2=82=\r\n=AC=FF=4112345\xC3\xA9\n",
       R"(u"<20AC><FFFF>5<E9>" d)"},
      // Fields, which come from memory.
      {"ORG:a\\nb\tc\nVERSION:3.0\n", R"(d"a" br tab tab "b" tab "c")"},
      {"ORG;CHARSET=utf-8:\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80!\x80?\n",
       R"(u"<E9><20AC><FFFF>!<FFFF>?" d)"},
      {"ORG;CHARSET=utf-8:\xE2\x82;b\n", R"(u"<FFFF>" d br tab tab u"b" d)"},
      {"ORG;CHARSET=windows-1251:\xE9\n", R"(w"<E9>" d)"},
  };
  for (const auto &[lines, expected] : cases) EXPECT_EQ(value(lines), expected) << lines;

  // A raw line end or a raw byte 0xFF ends a quoted-printable value; the rest is further lines.
  const std::string note = R"([body] [label] #79400 br [plain] tab tab d"a" br para )";
  EXPECT_EQ(listing("NOTE;QUOTED-PRINTABLE:a\r\n z:c\n"), note + generic("z", "c"));
  EXPECT_EQ(listing("NOTE;QUOTED-PRINTABLE:a\xFFz:c\n"), note + generic("z", "c"));
}

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

// Recognition, the heads of content lines, and the ways out of VwStreamRead.

#include <tuple>

#include "tests/support/runs.h"

namespace px::test {
namespace {

TEST(Recognition, BeginLine) {
  const std::pair<std::string, int32_t> cases[] = {
      // a bar stands behind each input
      {"BEGIN:VCARD\r\n|BEGIN:VCALENDAR\r|\n \r\n\t begin:vCard\n|B E\tG I N : V C A R D\n|", 0},
      {"BEG\r\n IN\n\t:\n VCA\n RD\n|BEGIN:\n\nVCARD\nX|", 0},
      {"|BEGIN|BEGIN:VCARD|BEGIN:VCARD\xFF\n|\xFF\nBEGIN:VCARD\n|", 9},
      {"\xEF\xBB\xBF\nBEGIN:VCARD\n|", 9},
      {"a.BEGIN:VCARD\n|BEGIN;X:VCARD\n|BEGIN=:VCARD\n|BEGIN\n:VCARD\n|BEGI:VCARD\n|", 9},
      {"BEGINS:VCARD\n|END:VCARD\n|BEGIN:VCARDS\n|BEGIN:VEVENT\n|BEGIN:VCARD;\n|", 9},
      {"BEGIN:VCARD:\n|BEGIN:V=CARD\n|BEGIN:V.CARD\n|", 9},
  };
  for (const auto &[list, answer] : cases) {
    for (const std::string &bytes : words(list)) {
      EXPECT_EQ(run(bytes, VcardFormatVcard, false).opened, answer) << bytes;
      EXPECT_EQ(run(bytes, VcardFormatVcalendar, false).opened, answer) << bytes;
    }
  }
}

TEST(Recognition, RecordAndAnswers) {
  const std::string_view bytes = "X:BEGIN:VCARD\nFN:Ann\nX-A:1\nEND:VCARD\n";
  for (const int16_t format : {VcardFormatVcard, VcardFormatVcalendar}) {
    MemoryIo io(bytes);
    Recorder recorder;
    CardRun cardRun(filter(), &io, &recorder);
    std::string host(40, '#');  // larger than what is written
    auto *info = reinterpret_cast<VcardInfo *>(host.data());
    EXPECT_EQ(cardRun.open(1142, info), VcardOpenUnknownFormat);
    EXPECT_EQ(host, std::string(40, '#'));
    EXPECT_EQ(cardRun.open(format, info), VcardOpenNotRecognised);
    EXPECT_EQ(host, std::string("\x78\0\0\0\0\x01\x03\0################vCard\0##########", 40));
    // The stream isn't taken back, so the next try finds what stands behind the colon.
    EXPECT_EQ(cardRun.open(format), VcardOpenGood);
    // Another id touches nothing.
    for (const int id : {0, 1140, 1142, 1195, 1197, -1}) {
      EXPECT_EQ(cardRun.open(static_cast<int16_t>(id), info), VcardOpenUnknownFormat) << id;
    }
    cardRun.readAll();
    EXPECT_EQ(recorder.trace, runOnce(bytes.substr(2), format).trace);
  }
}

// The calls since the last question.
std::string newCalls(Recorder *recorder) {
  const std::string text = brief(recorder->trace);
  recorder->trace.clear();
  return text;
}

const std::string kEmptySummary = "[h1] [h4] para [h4] para [h4] br para br";

// A host that never calls VwStreamTell: the second pass begins at the first byte.
TEST(ReadLoop, WithoutTell) {
  const std::string pet = R"([body] [label] d"X-PET" [plain] br tab tab "Rex" br para)";
  const std::tuple<std::string, int, std::vector<std::string>> cases[] = {
      {"", 0, {kEmptySummary + " end", "end", "end"}},
      {"X-PET:Rex\r\n", 0, {kEmptySummary + " " + pet + " end"}},
      {"X-PET:Rex\r\n", 4, {kEmptySummary + " " + pet, "end", "end"}},
      {"END:VCARD\r\nBEGIN:VCARD\r\nX:y\r\n", 0, {kEmptySummary + " next", "end", "end"}},
      // A stop in the summary takes effect at the first token of the listing.
      {"X-PET:Rex\r\n", 2, {kEmptySummary, pet + " end", "end"}},
  };
  for (const auto &[lines, stopAt, reads] : cases) {
    const std::string bytes = "BEGIN:VCARD\r\n" + lines + "END:VCARD\r\n";
    MemoryIo io(bytes);
    Recorder recorder;
    recorder.stopAt = [stop = stopAt](int paragraph) { return paragraph == stop; };
    CardRun cardRun(filter(), &io, &recorder);
    EXPECT_EQ(cardRun.open(VcardFormatVcard), VcardOpenGood);
    EXPECT_EQ(newCalls(&recorder), "");
    filter().streamSection(0, cardRun.data());
    EXPECT_TRUE(newCalls(&recorder).starts_with("BeginSection(0,0,0) Routine88(1,0)"));
    for (const std::string &expected : reads) {
      cardRun.read();
      EXPECT_EQ(newCalls(&recorder), expected) << lines << stopAt;
    }
  }
}

int paragraphs;

int64_t answerBreak(uint32_t kind, uint32_t, uint64_t user0, uint64_t) {
  const int64_t answers[] = {0, 0, 0, 2, -1, 0x10000, 1, 0x10001, -0xFFFF, 0};
  reinterpret_cast<OutputRoute *>(user0)->lastBreak = kind;
  return kind == SoBreakParagraph ? answers[paragraphs++] : 1;
}

TEST(ReadLoop, LowBitsOfTheAnswerStop) {
  MemoryIo io("BEGIN:VCARD\nA:\nB:\nC:\nD:\nE:\nF:\nG:\nEND:VCARD\n");
  Recorder recorder;
  CardRun run(filter(), &io, &recorder);
  filter().setSoRtn(SoIdEmitBreak, reinterpret_cast<SoRoutine>(answerBreak), run.data());
  run.open(VcardFormatVcard);
  run.beginSection();
  paragraphs = 0;
  std::string stops;
  while (run.read() == SoBreakParagraph) stops += std::to_string(paragraphs) + ' ';
  EXPECT_EQ(stops, "7 8 9 ");
  EXPECT_EQ(paragraphs, 10);
}

TEST(Scanner, Heads) {
  const std::string x255(255, 'X');
  const Examples cases = {
      // Names, of at most 255 characters; groups have no effect.
      {"F N:Ann\nA=B,\"C\":x\n:x\nx-\r\n a:x\n",
       R"(#79393: d"Ann" | d"A=B,"C"": "x" | d: "x" | d"x-a": "x" |)"},
      {x255 + ":x\n" + x255 + "YZ Z:y\n", "d\"" + x255 + "\": \"x\" | d\"" + x255 + "\": \"y\" |"},
      {"a.b.X-A:x\n.TEL:5\n", R"(d"X-A": "x" | #79406 [plain]: d"5" |)"},
      {std::string(254, 'g') + '.' + std::string(20000, '.') + "X-A:.;=:\n", R"(d"X-A": ".;=:" |)"},
      // Parameters as they stand in the file, from the first semicolon to the colon.
      {"A;B=1;c.d=e.f;G:x\nA; B\r\n ;\tC :x\n",
       R"(d"A" (B=1;c.d=e.f;G): "x" | d"A" ( B ;" tab "C ): "x" |)"},
      {"A;;B:x\nA;:x\nA;B=\"c:d\":x\n", R"(d"A" (;B): "x" | d"A" (): "x" | d"A" (B="c): "d":x" |)"},
      {"A;CHARSET=windows-1251:\xE9\n",
       R"-(w"A" d [plain] w" ( " d"CHARSET=windows-1251" w" )" d br tab tab "<E9>" |)-"},
      // A line end behind a delimiter is white space.
      {"N-A;\nX-T:123\nX-G.\n\t \r\nx-T :1\n", R"(d"N-A" (): "X-T:123" | d"x-T": "1" |)"},
      {"TEL;TYPE=\nHOME;\nWORK:5\n", R"(#79406 (#79428 sep #79429 sep): d"5" |)"},
      // A line without a colon is lost, and what its parameters set is not.
      {"A;B=1\nX-C:y\nX-D:z\nX-E\n", R"(d"X-C" (B=1): "X-C:y" | d"X-D": "z" |)"},
      {"A;QUOTED-PRINTABLE;B\nNOTE:=41\nNOTE:=41\n", R"(#79400: d"A" | #79400: d"=41" |)"},
      {"A;TYPE=HOME;C=D\nTEL;FAX:5\nTEL:5\n",
       R"(#79406 (#79428 sep #79432 sep): d"5" | #79406 [plain]: d"5" |)"},
      // Escapes count in a head, and the character that they give counts like a plain one.
      {"VERSION:3.0\nX\\,A\\;B:x\nX-A\\nX-B:x\n",
       R"(#79411: d"3.0" | d"X,A" (B): "x" | d"X-B": "x" |)"},
      // A value without a form goes out undecoded, and a quoted-printable one isn't joined.
      {"A;BASE64:\n QUJD\n", R"(d"A" (BASE64): " QUJD" |)"},
      {"A;QUOTED-PRINTABLE:=41=\nB:\tb\n", R"(d"A" (QUOTED-PRINTABLE): "=41=" | d"B": tab "b" |)"},
      // A charset holds on, but in version 2.
      {"NOTE;CHARSET=windows-1251:a\nNOTE:b\n", R"(#79400: w"a" d | #79400: w"b" d |)"},
      {"VERSION:3.0\nTZ;CHARSET=windows-1251:a\nTZ:b\n",
       R"(#79411: w"3.0" d | #79408: w"a" d | #79408: w"b" d |)"},
      {"VERSION:2.0\nTZ;CHARSET=windows-1251:a\nTZ:b\n",
       R"(#79411: u"2.0" d | #79408: w"a" d | #79408: u"b" d |)"},
  };
  for (const auto &[lines, out] : cases) EXPECT_EQ(shortForm(listing(lines)), out) << lines;

  // Names of every length, each behind a longer one.
  for (size_t length = 40; length > 0; --length) {
    const std::string name(length, 'X');
    EXPECT_EQ(shortForm(listing("Y" + name + ":x\n" + name + ":x\n")),
              "d\"Y" + name + "\": \"x\" | d\"" + name + "\": \"x\" |");
  }
}

TEST(Scanner, EndOfTheInput) {
  const Examples cases = {
      // a bar stands behind each input
      {"B:2|B:2\n|B:2\n\xFF"
       "C:3\nEND:VCARD\nBEGIN:VCARD\n|",
       R"(d"A": "1" | d"B": "2" |)"},
      {"B:|", R"(d"A": "1" | d"B": |)"},
      {"B|B.|B;HOME|B;TYPE=HOME|\xFF\n|B\xFF:2\nC:3\n|B;\xFF:2\nC:3\nEND:VCARD\nBEGIN:VCARD\n|",
       R"(d"A": "1" |)"},
  };
  for (const auto &[inputs, expected] : cases) {
    for (const std::string &lines : words(inputs)) {
      const Result result = run("BEGIN:VCARD\nA:1\n" + lines, VcardFormatVcard, false);
      EXPECT_EQ(shortForm(sectionsOf(brief(result.trace)).at(0).listing), expected) << lines;
      EXPECT_EQ(result.trace.back(), "SoEmitBreak(2, 0)");
    }
  }
}

}  // namespace
}  // namespace px::test

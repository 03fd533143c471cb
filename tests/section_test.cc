#include "tests/support/runs.h"

namespace px::test {
namespace {

// The listing of a section, with its properties as "name:value".
std::string outline(const Section &section) {
  std::string text = section.listing;
  replaceAll(&text, "[body] [label] d [plain] br tab tab ", ":");
  replaceAll(&text, "[body] [label] d\"", "");
  replaceAll(&text, "\" [plain] br tab tab ", ":");
  replaceAll(&text, "\" br para", "");
  replaceAll(&text, ":\"", ":");
  return text;
}

// The outlines of all sections.
void expectOutlines(const Examples &examples, int16_t format = VcardFormatVcard) {
  for (const auto &[bytes, expected] : examples) {
    std::string all;
    for (const Section &section : sections("BEGIN:VCARD\n" + bytes, format)) {
      all += (all.empty() ? "" : " | ") + outline(section);
    }
    EXPECT_EQ(all, expected) << bytes;
  }
}

TEST(Boundaries, TheNextBeginStartsASection) {
  expectOutlines({
      {"P:1\nEND:V\nX:x\nBEGIN:V\nQ:2\nEND:V\n", "P:1 next | Q:2 end"},
      {"P:1\nitem.eNd;X:V\nBEGIN:V\nQ:2\n", "P:1 next | Q:2 end"},
      {"P:1\nBEGIN:V\nQ:2\nEND:V\nR:3\nEND:V\n", "P:1 Q:2 end"},
      // Wherever it stands; the byte before it joins its name in the listing.
      {"P:1\nEND:V\nNOTE:a bEgIn:x\nQ:2\nEND:V\n", "P:1 next | Q:2 end"},
      {"P:1\nEND:V\nxbegin:y\nQ:2\n", "P:1 next | xbegin:y Q:2 end"},
      {"P:1\nEND:V\nbBEGIN:y\nQ:2\n", "P:1 next | bBEGIN:y Q:2 end"},
      {"P:1\nEND:BEGIN:x\nQ:2\n", "P:1 next | :BEGIN:x Q:2 end"},
      // Not one.
      {"P:1\nEND:V\nBEGIN :V\nQ:2\n", "P:1 end"},
      {"P:1\nEND:V\nBEGIN;X:V\nQ:2\n", "P:1 end"},
      {"P:1\nEND:V\n\xFF\nBEGIN:V\nQ:2\n", "P:1 end"},
      {"P:1\nEND:V\nB", "P:1 end"},
      {"P:1\nEND:V\nBEGIN", "P:1 end"},
      {"P:1", "P:1 end"},
  });
}

TEST(Boundaries, AnAgentsCardIsSkipped) {
  const std::string rest = "END:V\nP:1\nEND:V\nBEGIN:V\nS:4\n";
  expectOutlines({
      {"AGENT:\nBEGIN:V\nQ:2\nR:3\n" + rest, "P:1 next | S:4 end"},
      {"AGENT:x\nbegin;X:V\nQ:2\n" + rest, "P:1 next | S:4 end"},
      {"AGENT:x\nQ:2\n" + rest, "Q:2 next | S:4 end"},
      {"AGENT:BEGIN:V\nQ:2\n" + rest, "Q:2 next | S:4 end"},
      {"AGENT;QUOTED-PRINTABLE:x=\r\nP:0\r\nQ:2\r\n" + rest, "Q:2 next | S:4 end"},
      {"AGENT:\nBEGIN:V\nQ:2\nBEGIN:V\nR:3\nEND:V\nT:5\n" + rest, "P:1 next | S:4 end"},
      // The first line behind BEGIN goes unseen, be it an END or a BEGIN.
      {"AGENT:\nBEGIN:V\n" + rest, "S:4 end"},
      {"AGENT:\nBEGIN:V\nEND:V\nQ:2\n" + rest, "P:1 next | S:4 end"},
      {"AGENT:\nBEGIN:V\nBEGIN:V\nQ:2\n" + rest, "P:1 next | S:4 end"},
      // Only plain lines are counted.
      {"AGENT:\nBEGIN:V\nQ:2\nitem.END:V\nEND;X:V\nitem.BEGIN:V\nR:3\n" + rest,
       "P:1 next | S:4 end"},
      // In a quoted-printable line the skips don't see the byte that is pushed back, so no END is.
      {"AGENT;QUOTED-PRINTABLE:x\r\nBEGIN:V\r\nQ:2\r\nR:3\r\nEND:V\r\nP:1\r\n", "end"},
      {"P:1\nAGENT:\nBEGIN:V\nQ:2\nR:3\n", "P:1 end"},
      {"P:1\nAGENT:\nBEGIN", "P:1 end"},
      {"P:1\nAGENT:", "P:1 end"},
  });
}

// What was looked at behind AGENT and is no card is read again from its first byte, whatever that is.
TEST(Boundaries, TheLineBehindAnAgentIsWhole) {
  for (int c = 0; c < 0xFF; ++c) {
    if (c == ' ' || c == '\t') continue;  // a fold
    for (const std::string rest : {"X:v\n", ";A=b:v\n", ".X;A:v\n", "=X;A:v\n"}) {
      const std::string line = char(c) + rest + "END:VCARD\n";
      const Trace alone = runOnce("BEGIN:VCARD\n" + line, VcardFormatVcard).trace;
      for (const uint32_t size : {UINT32_MAX, 1U}) {
        const std::string card = "BEGIN:VCARD\nAGENT:\n" + line;
        expectSameCalls(alone, runOnce(card, VcardFormatVcard, {.largestRead = size}).trace,
                        testing::PrintToString(line) + " in reads of " + std::to_string(size));
      }
    }
  }
}

TEST(Boundaries, BlocksOfACalendar) {
  expectOutlines({{"P:1\nBEGIN:E\nQ:2\nEND:E\nX:x\nBEGIN:T\nR:3\nEND:T\nY:y\nEND:VCALENDAR\n",
                   "P:1 Q:2 next | R:3 end"},
                  {"BEGIN:E\nP:1\nBEGIN:A\nQ:2\nEND:A\nX:x\nEND:E\nBEGIN:E\nR:3\nEND:E\n",
                   "P:1 Q:2 next | R:3 end"}},
                 VcardFormatVcalendar);
}

const std::string kAnnounced = "BeginSection(0,0,0) Routine88(1,0) Routine89(1,0)";

std::string styleDefinitions() {
  const std::string reset = " Routine88(1,0) Routine89(1,0)";
  const std::string heading =
      "SetAttribute(8,2,1,0) SetAttribute(8,4,0,0) SetAttribute(8,3,0,0)" + reset;
  const std::string begin = "SetAttribute(21,0,0,0) ", end = " SetAttribute(23,0,0,0)";
  const std::string styles[] = {
      "SetAttribute(8,2,1,0) SetAttribute(8,4,1,0)" + reset,
      "SetAttribute(8,2,0,0) SetAttribute(8,4,0,0) SetAttribute(8,3,0,0)" + reset,
      "SetAttribute(8,2,0,0) SetAttribute(8,4,0,0) SetAttribute(8,3,1,0)" + reset,
      heading + " SetCharHeight(44)",
      heading + " SetCharHeight(32)",
      heading + " SetCharHeight(28)",
      heading + " SetCharHeight(24)",
      begin + "AddTabStop({2,0,0,2160}) AddTabStop({1,0,0,2340})" + end,
      begin + "AddTabStop({1,0,0,360}) AddTabStop({1,0,0,360})" + end,
  };
  std::string result;
  for (int i = 0; const std::string &calls : styles) {
    const std::string kind = i < 7 ? "0" : "1";  // of characters, of paragraphs
    const std::string id = std::to_string(i++);
    result += " BeginDefinition(0xA008001C," + id + ",{28," + id + "," + kind +
              ",0,0xFFFFFFFF,0xFFFFFFFF,0}) " + calls + " EndDefinition(0xA008001C," + id + ")";
  }
  return result;
}

TEST(Section, DefinesTheStylesOnceAStream) {
  const std::string card = "BEGIN:VCARD\nEND:VCARD\n";
  const std::string bytes = card + card + card;
  MemoryIo io(bytes);
  Recorder recorder;
  CardRun cardRun(filter(), &io, &recorder);
  const auto expectCalls = [&](const std::string &calls) {
    recorder.trace.clear();
    EXPECT_EQ(filter().streamSection(0, cardRun.data()), 0);
    EXPECT_EQ(brief(recorder.trace), calls);
    cardRun.read();
  };
  ASSERT_EQ(cardRun.open(VcardFormatVcard), VcardOpenGood);
  expectCalls(kAnnounced + styleDefinitions());
  expectCalls(kAnnounced);
  ASSERT_EQ(cardRun.open(VcardFormatVcard), VcardOpenGood);
  expectCalls(kAnnounced + styleDefinitions());
}

TEST(Section, ForgetsTheLastSummary) {
  const auto cards = sections(
      "BEGIN:VCARD\nFN:a\nN:b\nTITLE:c\nORG:d\nLABEL;INTL:e\nLABEL:f\nADR;INTL:g\nADR:h\nTEL:i\n"
      "EMAIL:j\nURL:k\nEND:VCARD\nBEGIN:VCARD\nEND:VCARD\n");
  EXPECT_EQ(cards.at(1).summary, "[h1] [h4] para [h4] para [h4] br para br");
  const auto events = sections(
      "BEGIN:VCALENDAR\nSUMMARY:a\nLOCATION:b\nDTSTART:c\nSTATUS:d\nEND:x\nBEGIN:y\nEND:y\n",
      VcardFormatVcalendar);
  EXPECT_EQ(events.at(1).summary, "br");
}

}  // namespace
}  // namespace px::test

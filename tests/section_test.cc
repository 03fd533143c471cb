#include <gtest/gtest.h>

#include "tests/support/runs.h"

namespace px::test {
namespace {

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

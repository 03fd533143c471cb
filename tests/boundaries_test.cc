#include <gtest/gtest.h>

#include <regex>

#include "tests/support/runs.h"
#include "tests/support/short_form.h"

namespace px::test {
namespace {

// The listing of a section, with its properties as "name:value".
std::string outline(const Section &section) {
  static const std::regex property(
      R"-(\[body\] \[label\] d(?:"([^"]*)")? \[plain\] br tab tab "([^"]*)" br para)-");
  return std::regex_replace(section.listing, property, "$1:$2");
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

TEST(Boundaries, BlocksOfACalendar) {
  expectOutlines({{"P:1\nBEGIN:E\nQ:2\nEND:E\nX:x\nBEGIN:T\nR:3\nEND:T\nY:y\nEND:VCALENDAR\n",
                   "P:1 Q:2 next | R:3 end"},
                  {"BEGIN:E\nP:1\nBEGIN:A\nQ:2\nEND:A\nX:x\nEND:E\nBEGIN:E\nR:3\nEND:E\n",
                   "P:1 Q:2 next | R:3 end"}},
                 VcardFormatVcalendar);
}

}  // namespace
}  // namespace px::test

// Stopping, saving, going back and reading on give the calls that an unbroken run gives.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "host/source/sniffer.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

namespace fs = std::filesystem;

// The samples, and whatever lies in the folder of real cards when there is one.
std::vector<fs::path> cardFiles() {
  std::vector<fs::path> files;
  for (const char *folder : {PX_SAMPLES, PX_CORPUS}) {
    if (!fs::is_directory(folder)) continue;
    for (const auto &entry : fs::directory_iterator(folder)) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string bytesOf(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

int16_t formatOf(std::string_view bytes) {
  MemoryIo io(bytes);
  return sniffFormat(&io);
}

// `run` compares reads of several sizes, buffers, both widths and a stop at every paragraph.
TEST(Resume, EveryFileGivesTheSameCallsHoweverItIsRead) {
  int cards = 0;
  for (const fs::path &path : cardFiles()) {
    SCOPED_TRACE(path);
    const std::string bytes = bytesOf(path);
    if (run(bytes, formatOf(bytes)).opened == VcardOpenGood) ++cards;
  }
  EXPECT_GE(cards, 6);
}

// Words of the format and what disturbs them, put together at random. A bar stands behind each.
constexpr std::string_view kWords =
    "BEGIN:VCARD\r\n|BEGIN|END|END:VCARD\r\n|:|:|;|;|.|=|\r\n|\r\n|\n|\r| |\t|\\|\\n|\\;|FN|N|ADR|"
    "VERSION:2.0\r\n|VERSION:3.0\r\n|LABEL|TEL|EMAIL|URL|ORG|TITLE|NOTE|PHOTO|KEY|AGENT:\r\n|AGENT|"
    "REV|X-A|SUMMARY|DTSTART|DALARM|ATTENDEE|ATTACH|ENCODING=QUOTED-PRINTABLE|QUOTED-PRINTABLE|"
    "ENCODING=BASE64|BASE64|VALUE=URL|VALUE=BINARY|CHARSET=utf-8|CHARSET=windows-1251|TYPE=HOME|"
    "INTL|X-FILENAME=a|AAAA|QUJD\r\n REVG|==|=C3=A9|=\r\n|=0D=0A|\xC3\xA9|\xE2\x82|\x80|"
    "\xF0\x9F\x98\x80|begin:|text|http://example.org/|";

std::string randomCard(std::mt19937 &random) {
  static const std::vector<std::string> all = words(kWords);
  std::string text = "BEGIN:VCARD\r\n";
  for (auto count = random() % 60; count > 0; --count) text += all[random() % all.size()];
  return text;
}

#ifdef PX_SANITIZED
constexpr int kRandomInputs = 10000;
#else
constexpr int kRandomInputs = 3000;  // for the loop of who works on it
#endif

// No byte 0xFF among the words: a stop would undo that it reads as the end of the input.
TEST(Resume, RandomInputsGiveTheSameCallsHoweverTheyAreRead) {
  std::mt19937 random(20260131);
  for (int i = 0; i < kRandomInputs && !HasFailure(); ++i) {
    const std::string bytes = randomCard(random);
    const int16_t format = i % 2 == 0 ? VcardFormatVcard : VcardFormatVcalendar;
    const Result whole = runOnce(bytes, format);
    const uint32_t size = 1 + static_cast<uint32_t>(random() % 7);
    const bool wide = random() % 2 == 0;
    SCOPED_TRACE(testing::Message() << "reads of " << size << ", wide " << wide << "\n" << bytes);
    const Result other = runOnce(bytes, format, {.largestRead = size, .hasWideSlots = wide});
    EXPECT_EQ(whole.opened, other.opened);
    EXPECT_TRUE(whole.saved == other.saved);
    expectSameCalls(whole.trace, other.trace, "other reads");
  }
}

int countOf(std::string_view word, std::string_view text) {
  int count = 0;
  for (size_t at = text.find(word); at != text.npos; at = text.find(word, at + 1)) ++count;
  return count;
}

// Reads to the stop at one paragraph, saves, reads on, goes back and reads on once more. The saved
// state has no charset, version, encoding or types in it, so the lines of the card must leave
// nothing of these in force: the second reading finds what the first one left at the end. Only
// the paragraphs of the listing count: a stop in the summary takes effect in the head of the first
// line, whose name isn't in the saved state either.
TEST(Resume, SavedStateBringsTheSameCallsAgain) {
  const std::string lines =
      "VERSION:2.1\r\nFN:Ann Example\r\nN:Example;Ann;;;Dr\r\nTITLE:Boss\r\n"
      "ORG:Acme;Sales\r\nTEL;HOME:555\r\nADR;WORK:;;Main 1;Town;ST;123;USA\r\n"
      "NOTE;ENCODING=QUOTED-PRINTABLE:a=0D=0Ab=\r\nc\r\nPHOTO;BASE64:\r\n QUJD\r\n REVG\r\n\r\n"
      "X-PET;TYPE=DOG:Rex\r\nEMAIL:ann\r\nURL:u\r\nREV:2026\r\n";
  const std::string card = "BEGIN:VCARD\r\n" + lines + "END:VCARD\r\n";
  const int inSummary = countOf("para", summary(lines));
  const int inAll = inSummary + countOf("para", listing(lines));
  ASSERT_EQ(inAll, 20);
  for (int stop = inSummary + 1; stop <= inAll; ++stop) {
    MemoryIo io(card, {.largestRead = 16});
    Recorder recorder;
    recorder.stopAt = [stop](int paragraph) { return paragraph == stop; };
    CardRun cardRun(filter(), &io, &recorder);
    ASSERT_EQ(cardRun.open(VcardFormatVcard), VcardOpenGood);
    cardRun.beginSection();
    ASSERT_EQ(cardRun.read(), static_cast<uint32_t>(SoBreakParagraph));

    std::string saved(VcardSavedSize, '\0');
    filter().streamTell(0, cardRun.data());
    filter().getData(saved.data(), cardRun.data());
    recorder.trace.clear();
    EXPECT_EQ(cardRun.read(), static_cast<uint32_t>(SoBreakDocument));
    const Trace first = recorder.trace;

    recorder.trace.clear();
    filter().setData(saved.data(), cardRun.data());
    EXPECT_EQ(filter().streamSeek(0, cardRun.data()), 0);
    EXPECT_EQ(cardRun.read(), static_cast<uint32_t>(SoBreakDocument));
    expectSameCalls(first, recorder.trace, "stop at paragraph " + std::to_string(stop));
  }
}

}  // namespace
}  // namespace px::test

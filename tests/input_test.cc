// What the reader makes of line ends, folds, escapes and the end of the input, and which calls it
// makes on the host's object.

#include <cstring>
#include <numeric>
#include <utility>

#include "tests/support/runs.h"

namespace px::test {
namespace {

// The properties that "X:" and `rest`, up to the end of the input, give at a version.
std::string linesAt(int version, const std::string &rest) {
  const std::string line = "VERSION:" + std::to_string(version) + ".0\r\n";
  const auto all = sections("BEGIN:VCARD\r\n" + (version > 1 ? line : "") + "X:" + rest);
  std::string text = shortForm(all.at(0).listing);
  if (version > 1) text = text.substr(text.find("| ") + 2);
  replaceAll(&text, "u\"", "d\"");  // version 2 names a charset
  replaceAll(&text, "\" d:", "\":");
  return text;
}

TEST(LogicalReader, LinesFoldsAndEscapes) {
  const struct {
    std::string rest, version1, later = version1;
  } cases[] = {
      // A run of CR and LF in any mix is one line end.
      {"a\r\nY:b\rZ:c\n", R"(d"X": "a" | d"Y": "b" | d"Z": "c" |)"},
      {"a\n\r\n\n\rY:b\r\n\r\n", R"(d"X": "a" | d"Y": "b" |)"},
      // A fold keeps its white byte in version 1 only.
      {"a\r\n b\n\nY:\r\r\tc", R"(d"X": "a b" | d"Y": tab "c" |)", R"(d"X": "ab" | d"Y": "c" |)"},
      {"a\r\n  b\n\tc", R"(d"X": "a  b" tab "c" |)", R"(d"X": "a bc" |)"},
      // A line end right behind a fold: data behind a CR, a further line end behind an LF.
      {"a\r\n \r\nY:b", R"(d"X": "a <D>" | d"Y": "b" |)", R"(d"X": "a<D>" | d"Y": "b" |)"},
      {"a\n \r\nY:b", R"(d"X": "a <D>" | d"Y": "b" |)", R"(d"X": "a" | d"Y": "b" |)"},
      {"a\n \nY:b", R"(d"X": "a " br "Y:b" |)", R"(d"X": "a" br "Y:b" |)"},
      // Escapes, also across a fold; never at the beginning of a line.
      {R"(a\,b\;c\\d\ne\Nf\xg)", R"(d"X": "a<5C>,b<5C>;c<5C><5C>d<5C>ne<5C>Nf<5C>xg" |)",
       R"(d"X": "a,b;c<5C>d" br "e" br "f<5C>xg" |)"},
      {"a\r\n \\nb", R"(d"X": "a <5C>nb" |)", R"(d"X": "a" br "b" |)"},
      {"a\r\n\\,Y:b\\\r\nZ:\\\xFF", R"(d"X": "a" | d"<5C>,Y": "b<5C>" | d"Z": "<5C><FF>" |)"},
      {"a\\\r\n ,b", R"(d"X": "a<5C> ,b" |)", R"(d"X": "a<5C>,b" |)"},
      // The end of the input, and the byte that looks like it.
      {"", R"(d"X": |)"},
      {"a\\", R"(d"X": "a<5C>" |)", R"(d"X": "a" |)"},
      {"a\r\n ", R"(d"X": "a <FF>" |)", R"(d"X": "a<FF>" |)"},
      {"a\xFF\r\nY:\xFF\xFF", R"(d"X": "a<FF>" | d"Y": "<FF><FF>" |)"},
  };
  for (const auto &c : cases) {
    for (const int version : {1, 2, 3}) {
      EXPECT_EQ(linesAt(version, c.rest), version == 1 ? c.version1 : c.later) << version;
    }
  }
}

constexpr std::string_view kCard = "BEGIN:VCARD\r\nEND:VCARD\r\n";  // END stands at 13 of 24

// The calls on the object since the last question, but for the one that comes before each refill.
std::string callsIn(std::vector<std::string> *log) {
  std::string text;
  for (const std::string &line : *log) text += (text.empty() ? "" : ", ") + line;
  log->clear();
  replaceAll(&text, "query 24, ", "");
  replaceAll(&text, "query 24 failed, ", "");
  return text;
}

TEST(Stream, CallsOfRefillsAndSeeks) {
  const struct {
    MemoryIoOptions io;
    const char *calls;
  } cases[] = {
      {{}, "tell64 0, read 0 24, tell64 24, read 24 0"},
      {{.hasWideSlots = false}, "tell 0, read 0 24, tell 24, read 24 0"},
      {{.failing = IoCall::Query, .failAt = 2}, "tell64 0, read 0 24, tell 24, read 24 0"},
      // The second pass begins at 13: outside the buffer, at its first byte, or inside.
      {{.largestRead = 16},
       "tell64 0, read 0 16, tell64 16, read 16 8, seek 13, tell64 13, read 13 11, tell64 24, "
       "read 24 0"},
      {{.largestRead = 13}, "tell64 0, read 0 13, tell64 13, read 13 11, tell64 24, read 24 0"},
      // A failed call: Tell reads as 0, Seek is made up for by the refill, Read is the end.
      {{.largestRead = 16, .failing = IoCall::Tell, .failAt = 1, .failOn = true},
       "tell64 0 failed, read 0 16, tell64 0 failed, seek64 16, read 16 8, seek 13, "
       "tell64 0 failed, seek64 13, read 13 11, tell64 0 failed, seek64 24, read 24 0"},
      {{.largestRead = 13, .wideAnswer = 1, .failing = IoCall::Tell, .failAt = 2},
       "tell 0, read 0 13, tell 0 failed, seek 13, read 13 11, tell 24, read 24 0"},
      {{.largestRead = 16, .failing = IoCall::Seek, .failAt = 1},
       "tell64 0, read 0 16, tell64 16, read 16 8, seek 13 failed, tell64 24, seek64 13, "
       "read 13 11, tell64 24, read 24 0"},
      {{.largestRead = 16, .failing = IoCall::Seek, .failAt = 1, .failOn = true},
       "tell64 0, read 0 16, tell64 16, read 16 8, seek 13 failed, tell64 24, seek64 13 failed"},
      {{.failing = IoCall::Read, .failAt = 1}, "tell64 0, read 0 24 failed"},
  };
  for (const auto &c : cases) {
    std::vector<std::string> log;
    MemoryIoOptions io = c.io;
    io.log = &log;
    runOnce(kCard, VcardFormatVcard, io);
    EXPECT_EQ(callsIn(&log), c.calls);
  }
}

TEST(Stream, DrivenByHand) {
  std::vector<std::string> log;
  Recorder recorder;
  MemoryIo io(kCard, {.largestRead = 14, .failing = IoCall::Read, .failAt = 1, .log = &log});
  io.Seek(&io, 0, 5);  // wherever the host has left it
  CardRun run(filter(), &io, &recorder);
  const auto tellAndSeek = [&run] {
    filter().streamTell(0, run.data());
    return filter().streamSeek(0, run.data());
  };
  EXPECT_EQ(run.open(VcardFormatVcard), VcardOpenNotRecognised);
  EXPECT_EQ(callsIn(&log), "seek 5, tell64 5, seek64 0, read 0 14 failed");
  EXPECT_EQ(run.open(VcardFormatVcard), VcardOpenGood);  // a failure isn't remembered
  EXPECT_EQ(callsIn(&log), "tell64 0, read 0 14");
  EXPECT_EQ(tellAndSeek(), 0);  // the buffer is used up: its end is outside
  EXPECT_EQ(callsIn(&log), "seek 14");
  run.readAll();
  log.clear();
  EXPECT_EQ(tellAndSeek(), 0);  // at the end of the input
  EXPECT_EQ(callsIn(&log), "seek 24");

  io.Seek = [](VcardIo *, uint16_t, uint64_t) { return -7; };
  EXPECT_EQ(tellAndSeek(), -1);
  const auto seek64 = std::exchange(io.Seek64, nullptr);  // one of the two is not enough
  EXPECT_EQ(run.open(VcardFormatVcard), VcardOpenNotRecognised);
  EXPECT_EQ(callsIn(&log), "tell 24, read 24 0");
  io.Seek64 = seek64;
  io.Tell64 = nullptr;
  EXPECT_EQ(run.open(VcardFormatVcard), VcardOpenNotRecognised);
  EXPECT_EQ(callsIn(&log), "tell 24, read 24 0");
}

constexpr std::string_view kBook =
    "BEGIN:VCARD\nFN:Ann\nN;QUOTED-PRINTABLE:A=\n=41;b\nTEL;HOME:555\nPHOTO;BASE64:\n AAAA\n BBBB\n"
    "\nAGENT:\nX-PET;A=b:Rex\n the dog\nEND:VCARD\nBEGIN:VCARD\nURL:u:v\nEND:VCARD\n";

// A failed query, tell or seek changes nothing that comes out. Behind a failed read the filter has
// less to tell, and ends what it has begun.
TEST(Stream, EachCallFailsInTurn) {
  const Trace good = runOnce(kBook, VcardFormatVcard).trace;
  for (const IoCall kind : {IoCall::Query, IoCall::Tell, IoCall::Seek, IoCall::Read}) {
    std::string log = "failed";
    for (uint32_t n = 1; log.find("failed") != log.npos; ++n) {
      std::vector<std::string> lines;
      const MemoryIoOptions io = {.largestRead = 11, .failing = kind, .failAt = n, .log = &lines};
      const Trace trace = runOnce(kBook, VcardFormatVcard, io).trace;
      const std::string how = "call " + std::to_string(n) + " of kind " + std::to_string(int(kind));
      if (kind != IoCall::Read) {
        expectSameCalls(good, trace, how);
      } else if (!trace.empty()) {
        const auto count = [&trace](auto... calls) {
          return (std::count(trace.begin(), trace.end(), calls) + ...);
        };
        EXPECT_EQ(trace.back(), "SoEmitBreak(2, 0)") << how;
        EXPECT_EQ(count("SoBeginSection(0, 0, 0)"),
                  count("SoEmitBreak(2, 0)", "SoEmitBreak(3, 0)"));
        EXPECT_EQ(count("SoEmitBreak(2, 0)"), 1) << how;
      }
      log = std::accumulate(lines.begin(), lines.end(), std::string());
    }
  }
}

// A card whose lines never end, but for a tail that stands a little before the end of positions.
class EndlessIo final : public PositionedIo<EndlessIo> {
 public:
  static constexpr uint32_t Far = UINT32_MAX - 100;
  static constexpr int MostReads = 50;

  explicit EndlessIo(std::string_view tail) : tail_(tail) {}

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
    if (++reads > MostReads) return IoFailed;  // the reader goes round
    for (; *count < size; ++*count, ++position) {
      const uint64_t inTail = position - Far;
      static_cast<char *>(to)[*count] = position < kHead.size() ? kHead[position]
                                        : inTail < tail_.size() ? tail_[inTail]
                                                                : ":1\nB"[inTail % 4];
    }
    return 0;
  }

  int reads = 0;

 private:
  static constexpr std::string_view kHead = "BEGIN:VCARD\nB:1\nB:1\nEND:VCARD\n";

  std::string_view tail_;
};

// Stops behind the first B, which is the fourth paragraph, goes far and reads on.
TEST(Stream, EndsWherePositionsDo) {
  const std::pair<std::string_view, int> cases[] = {{"", 26}, {":1\nEND:VCARD\n", 2}};
  for (const auto &[tail, properties] : cases) {
    for (const bool wide : {true, false}) {
      EndlessIo io(tail);
      if (!wide) io.Seek64 = nullptr;
      Recorder recorder;
      recorder.stopAt = [&](int paragraph) { return paragraph == 4 || paragraph > 100; };
      CardRun run(filter(), &io, &recorder);
      ASSERT_EQ(run.open(VcardFormatVcard), VcardOpenGood);
      run.beginSection();
      EXPECT_EQ(run.read(), uint32_t{SoBreakParagraph});
      char saved[VcardSavedSize];
      filter().getData(saved, run.data());
      std::memcpy(saved + 4, &EndlessIo::Far, 4);  // what VwStreamTell would have stored there
      filter().setData(saved, run.data());
      EXPECT_EQ(filter().streamSeek(0, run.data()), 0);
      EXPECT_EQ(run.read(), uint32_t{SoBreakDocument});
      EXPECT_EQ(std::count(recorder.trace.begin(), recorder.trace.end(), "SoEmitChar('B')"),
                properties);
      EXPECT_LT(io.reads, EndlessIo::MostReads);
    }
  }
}

}  // namespace
}  // namespace px::test

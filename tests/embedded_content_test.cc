// The content of embedded objects, through the filter and the host's own objects.

#include <nettle/base64.h>

#include "tests/support/failing_memory.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

std::string bytes(size_t size, std::string text) {
  for (uint32_t x = 1; text.size() < size; x = x * 1664525 + 1013904223) text += char(x >> 24);
  return text;
}
// A picture whose Base64 text has no "=" and a key whose text has two.
const std::string kPicture = bytes(200 * 1024 + 1, "\xFF\xD8\xFF\xE0\x01\x02JFIF");
const std::string kKey = bytes(40, "");

// In lines of 76 characters, `fold` at the head of each.
std::string base64(const std::string &data, const std::string &fold) {
  std::string text(BASE64_ENCODE_RAW_LENGTH(data.size()), ' ');
  base64_encode_raw(text.data(), data.size(), reinterpret_cast<const uint8_t *>(data.data()));
  const size_t width = 76 - fold.size();
  std::string lines;
  for (size_t at = 0; at < text.size(); at += width)
    lines += "\r\n" + fold + text.substr(at, width);
  return lines;
}

struct Range {
  uint64_t start, length;
};
using Object = std::unique_ptr<VcardIo, decltype([](VcardIo *io) { io->Close(io); })>;

Object openObject(VcardStream *stream, Range range) {
  VcardIo *io = nullptr;
  EXPECT_EQ(filter().doSpecial(stream, range.start, &io, range.length, 0, 2), 0);
  return Object(io);
}

// Reads once. Answers the number of bytes, or -1 for a failure.
int64_t readPiece(VcardIo *io, uint32_t size, std::string *to) {
  char buffer[4096];
  uint32_t count = 0;
  if (io->Read(io, buffer, size, &count) != 0) return -1;
  to->append(buffer, count);
  return count;
}
// Reads up to the end, 0, or a failure, -1.
int64_t readAll(VcardIo *io, std::string *to) {
  int64_t last;
  do last = readPiece(io, 2999, to);
  while (last > 0);
  return last;
}

// Notes the ranges, and reads each at once.
struct Collector : Recorder {
  void setObjectData(uint32_t selector, uint64_t a, uint64_t b) override {
    Recorder::setObjectData(selector, a, b);
    if (selector == SoObjectDataRange) ranges.push_back({a, b});
    if (selector == SoObjectDataExtent) ranges.push_back({a, b - a});
  }
  void commitObjectData() override {
    Recorder::commitObjectData();
    const Object object = openObject(stream, ranges.back());
    contents.emplace_back();
    EXPECT_EQ(readAll(object.get(), &contents.back()), 0);
  }

  VcardStream *stream = nullptr;
  std::vector<Range> ranges;
  std::vector<std::string> contents;
};

TEST(EmbeddedContent, ComesBackWheneverItIsRead) {
  const std::string begin = "BEGIN:VCARD\r\nVERSION:", end = "\r\nEND:VCARD\r\n";
  const std::string attach = "\r\nATTACH;BASE64;BINARY:";
  const struct {
    int16_t format;
    std::string text;
  } cards[] = {
      {VcardFormatVcard, begin + "2.1\r\nPHOTO;JPEG;ENCODING=BASE64:" + base64(kPicture, " ") +
                             "\r\n\r\nNOTE:x\r\nKEY;BASE64:" + base64(kKey, " ") + "\r\n" + end},
      // The byte behind the text, which the range takes in, is Base64 as well.
      {VcardFormatVcard, begin + "3.0\r\nPHOTO;ENCODING=BASE64;TYPE=JPEG:" + base64(kPicture, "") +
                             "\r\nTEL:5\r\nKEY;BASE64:" + base64(kKey, " ") + end},
      {VcardFormatVcard,  // broken off
       begin + "2.1\nPHOTO;BASE64:" + base64(kPicture, " ") + "\nKEY;BASE64:" + base64(kKey, "")},
      {VcardFormatVcalendar, "BEGIN:VCALENDAR" + attach + base64(kPicture, "") + attach +
                                 base64(kKey, " ") + "\r\nEND:VCALENDAR\r\n"},
  };
  for (const auto &card : cards) {
    MemoryIo io(card.text);
    Collector collector;
    CardRun run(filter(), &io, &collector);
    ASSERT_EQ(run.open(card.format), VcardOpenGood);
    collector.stream = run.stream();
    run.readAll();
    ASSERT_EQ(collector.ranges.size(), 2U);
    expectSameText(kPicture, collector.contents[0], "the picture");
    expectSameText(kKey, collector.contents[1], "the key");
    // The filter doesn't notice that its input was moved.
    expectSameCalls(runOnce(card.text, card.format).trace, collector.trace, "objects were read");

    // Behind the whole file, each twice, all open at once and read in turns.
    const uint32_t sizes[] = {1, 3, 4096, 7};
    std::vector<Object> objects;
    for (const size_t i : {0U, 1U, 0U, 1U})
      objects.push_back(openObject(run.stream(), collector.ranges[i]));
    std::string read[4];
    for (bool more = true; more;) {
      more = false;
      for (size_t i = 0; i < 4; ++i) more |= readPiece(objects[i].get(), sizes[i], &read[i]) > 0;
    }
    for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(read[i] == collector.contents[i % 2]) << i;
  }
}

// An object over an input that the filter hasn't read.
struct Opened {
  explicit Opened(const MemoryIoOptions &options)
      : io(text, options), run(filter(), &io, &output) {}

  const std::string content = kPicture.substr(0, 30000);
  const std::string text = ":" + base64(content, " ") + "\r\nT";
  MemoryIo io;
  Output output{};
  CardRun run;
};

TEST(EmbeddedContent, SeekAndTell) {
  Opened opened({});
  const Object object = openObject(opened.run.stream(), {1, opened.text.size()});
  VcardIo *io = object.get();
  for (const uint32_t position : {0U, 5000U, 5001U, 100U, 0U, 29999U, 30000U, 40000U}) {
    const bool wide = position % 2 == 1;
    EXPECT_EQ(wide ? io->Seek64(io, 0, position) : io->Seek(io, 0, position), 0);
    std::string content;
    readPiece(io, 4096, &content);
    EXPECT_EQ(content, position > 29999 ? "" : opened.content.substr(position, 4096));
    uint32_t told = 0;
    int64_t told64 = 0;
    EXPECT_EQ(io->Tell(io, &told) | io->Tell64(io, &told64), 0);
    EXPECT_EQ(told, position + content.size());
    EXPECT_EQ(told64, told);
  }
  EXPECT_NE(io->Seek(io, 1, 0), 0);  // only from the start
  EXPECT_NE(io->Seek64(io, 0, -1), 0);
  EXPECT_NE(io->Write(io, 0, 0, 0), 0);
}

// Whatever fails while it is opened, nothing stays.
TEST(EmbeddedContent, AllocationsFailInTurn) {
  Opened opened({});
  for (const uint32_t failAt : {1U, 2U, 3U, 4U}) {  // the object, the range, the decoder, nothing
    VcardIo *io = &opened.io;
    const FailingMemory memory(failAt);
    EXPECT_EQ(filter().doSpecial(opened.run.stream(), 1, &io, 9, 0, 2), failAt < 4 ? -1 : 0);
    EXPECT_EQ(memory.allocations(), std::min(failAt, 3U));
    if (failAt == 4) io->Close(io);
    EXPECT_EQ(memory.handles(), 0);
  }
}

// A call that fails once costs nothing but a second attempt. One that goes on failing is a failure
// behind all that could be read.
TEST(EmbeddedContent, ReadsAndSeeksFailInTurn) {
  for (const IoCall call : {IoCall::Read, IoCall::Seek, IoCall::Query}) {
    for (const bool on : {false, true}) {
      bool failed = true;
      size_t longest = 0;  // of what was read in front of a failure
      for (uint32_t failAt = 1; failed; ++failAt) {
        std::vector<std::string> log;
        Opened opened({.failing = call, .failAt = failAt, .failOn = on, .log = &log});
        const Object object = openObject(opened.run.stream(), {1, opened.text.size()});
        std::string content;
        int64_t last = readAll(object.get(), &content);
        if (last != 0) last = readAll(object.get(), &content);
        failed = std::any_of(log.begin(), log.end(),
                             [](const auto &line) { return line.ends_with("failed"); });
        const bool lasting = failed && on && call != IoCall::Query;
        EXPECT_EQ(last, lasting ? -1 : 0) << failAt;
        EXPECT_TRUE(content == opened.content.substr(0, lasting ? content.size() : SIZE_MAX));
        EXPECT_TRUE(failed || longest == content.size());
        longest = std::max(longest, content.size());
      }
    }
  }
}

}  // namespace
}  // namespace px::test

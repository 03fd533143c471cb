// What hostile files cost, counted and not timed: bytes that the host's object delivers and calls
// that the filter makes. docs/limits.md tells which of them reach the limit.

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <set>

#include "host/io/limited_io.h"
#include "host/reading/file_reading.h"
#include "host/writers/file_text.h"
#include "host/writers/json_writer.h"
#include "tests/support/hostile_inputs.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

// Counts what is read of another object.
struct CountingIo : PositionedIo<CountingIo> {
  explicit CountingIo(VcardIo *io) : source(io) {}
  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
    const int32_t result = readIoAt(source, position, to, size, count);
    bytes += *count;
    return result;
  }
  VcardIo *source;
  uint64_t bytes = 0;
};

struct Cost {
  uint64_t read = 0;
  uint64_t calls = 0;
  std::optional<uint64_t> stop;  // where the limit came
  std::string json;
};

std::string typeOf(const void *, size_t) { return "text/plain"; }

Cost costOf(std::string_view text, Reading reading, WorkLimit limit = WorkLimit()) {
  Cost cost;
  MemoryIo memory(text);
  CountingIo io(&memory);
  JsonWriter json(JsonForm::Elements, typeOf, [&](std::string_view piece) { cost.json += piece; });
  json.beginFile("hostile");
  readFile(filter(), &io, reading, [](uint64_t, const std::string &) {}, &json, &limit);
  json.flush();
  cost.read = io.bytes;
  cost.calls = limit.calls();
  cost.stop = limit.stoppedAt();
  return cost;
}

// Those that reach the limit when their bytes are read as they stand.
const std::set<std::string> kStoppedRaw = {"missed END", "broken lines", "broken lines, short",
                                           "amplifier"};

class Limits : public testing::TestWithParam<Reading> {};

// The view's work is so many times the size whatever the file holds; what is stopped is whole.
TEST_P(Limits, HostileFiles) {
  constexpr size_t size = 60'000;
  const bool raw = GetParam() == Reading::Raw;
  for (const auto &[name, text] : hostileInputs(size)) {
    const Cost cost = costOf(text, GetParam());
    RecordProperty(std::string(name) + ", bytes read", std::to_string(cost.read));
    RecordProperty(std::string(name) + ", calls", std::to_string(cost.calls));
    // A refill more, and what the filter still gives out of its buffer up to a paragraph's end.
    const uint64_t most = WorkLimit::Free + WorkLimit::PerByte * text.size() + 64 * 1024;
    EXPECT_LE(cost.read, raw ? most : 40 * text.size()) << name;
    EXPECT_LE(cost.calls, raw ? most + text.size() : 4 * text.size()) << name;
    EXPECT_EQ(cost.stop.has_value(), raw && kStoppedRaw.contains(name)) << name;
    rapidjson::Document document;
    document.Parse(("[" + cost.json + "]").c_str());
    EXPECT_TRUE(document.IsArray()) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(All, Limits, testing::Values(Reading::Viewed, Reading::Raw));

// Many small components cost no refill each.
TEST(WorkLimit, HonestFiles) {
  std::string events = "BEGIN:VCALENDAR\nVERSION:2.0\n", cards;
  for (int i = 0; i < 500; ++i) {
    events += "BEGIN:VEVENT\nSUMMARY:a\nBEGIN:VALARM\nTRIGGER:1\nEND:VALARM\nEND:VEVENT\n";
    cards += "BEGIN:VCARD\nFN:a\nAGENT:\nBEGIN:VCARD\nFN:b\nEND:VCARD\nEND:VCARD\n";
  }
  for (const std::string &text : {events + "END:VCALENDAR\n", cards}) {
    EXPECT_LE(costOf(text, Reading::Viewed).read, 4 * text.size());
    EXPECT_LE(costOf(text, Reading::Raw).read, 4 * text.size());
  }
}

TEST(WorkLimit, EndsOrFails) {
  const std::string text(WorkLimit::Free / 4, 'x');
  std::string buffer(text.size(), '\0');
  for (const PastLimit past : {PastLimit::Ends, PastLimit::Fails}) {
    MemoryIo memory(text);
    WorkLimit limit;
    LimitedIo io(&memory, &limit, past);
    uint32_t count = 0;
    int reads = 0;
    do {
      EXPECT_EQ(io.Seek(&io, 0, 10), 0);
      if (io.Read(&io, buffer.data(), uint32_t(buffer.size()), &count) != 0) break;
      reads += count > 0;
    } while (count > 0 && reads < 1000);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(io.refusedAt(), 10U);
    EXPECT_EQ(io.delivered(), uint64_t(reads) * (text.size() - 10));
    EXPECT_EQ(reads, 4 + int(WorkLimit::PerByte) + 1);  // the last one crosses the limit
    EXPECT_EQ(io.Read(&io, buffer.data(), 1, &count) == 0, past == PastLimit::Ends);
    EXPECT_FALSE(limit.stoppedAt());
    limit.stop(7);
    limit.stop(8);
    EXPECT_EQ(limit.stoppedAt(), 7U);
  }
}

}  // namespace
}  // namespace px::test

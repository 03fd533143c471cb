// Whole files read through their view, from bytes to JSON, text and faults.

#include "host/reading/file_reading.h"

#include <filesystem>
#include <fstream>

#include "host/source/utf8.h"
#include "host/writers/file_text.h"
#include "host/writers/json_writer.h"
#include "tests/support/runs.h"
#include "tests/support/scripted_events.h"

namespace px::test {
namespace {

using namespace std::string_literals;

// Memory that counts what it gives.
class CountingIo final : public PositionedIo<CountingIo> {
 public:
  CountingIo(std::string_view bytes, uint32_t largestRead)
      : bytes_(bytes), largestRead_(largestRead) {}

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count) {
    if (position >= bytes_.size()) return 0;
    *count = static_cast<uint32_t>(
        bytes_.copy(static_cast<char *>(to), std::min(size, largestRead_), position));
    given += *count;
    return 0;
  }

  uint64_t given = 0;

 private:
  std::string_view bytes_;
  uint32_t largestRead_;
};

// All that comes of a file: faults, JSON, text.
std::string readAll(VcardIo *io) {
  std::string faults, json, text;
  const FaultSink fault = [&](uint64_t line, const std::string &what) {
    faults += std::to_string(line) + ": " + what + '\n';
  };
  JsonWriter jsonWriter(JsonForm::Lines, scriptedContentType, [&](auto part) { json += part; });
  FileText textWriter(TextLook(), scriptedContentType, [&](auto part) { text += part; });
  readFile(filter(), io, Reading::Viewed, fault, &jsonWriter);
  jsonWriter.end();
  readFile(
      filter(), io, Reading::Viewed, [](auto, auto &) {}, &textWriter);
  textWriter.finish();
  return faults + json + text;
}

// Neither the size of reads nor the place at which a buffer ends makes a difference.
TEST(Reading, AnyReadsGiveTheSame) {
  size_t files = 0;
  for (const char *folder : {PX_SAMPLES, PX_SAMPLES "/../tests/cards"}) {
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
      std::ifstream file(entry.path());
      const std::string bytes(std::istreambuf_iterator<char>(file), {});
      CountingIo whole(bytes, UINT32_MAX);
      const std::string expected = readAll(&whole);
      for (const uint32_t size : {1U, 7U, 30U}) {
        CountingIo io(bytes, size);
        EXPECT_EQ(readAll(&io), expected) << entry.path() << " in reads of " << size;
      }
      ++files;
    }
  }
  EXPECT_GT(files, 10U);
}

// However many cards and components there are, the bytes are read a few times.
TEST(Reading, EachByteAFewTimes) {
  const std::pair<std::string, std::string> parts[] = {
      {"", "BEGIN:VCARD\nVERSION:3.0\nFN:Ann\nEND:VCARD\n"},
      {"BEGIN:VCARD\n", "AGENT:\nBEGIN:VCARD\nFN:Ann\nEND:VCARD\n"},
      {"BEGIN:VCALENDAR\n", "BEGIN:VEVENT\nBEGIN:VALARM\nTRIGGER:1\nEND:VALARM\nEND:VEVENT\n"}};
  for (const auto &[head, part] : parts) {
    std::string file = head;
    for (int i = 0; i < 3000; ++i) file += part;
    CountingIo io(file, UINT32_MAX);
    readFile(
        filter(), &io, Reading::Viewed, [](auto, auto &) {}, std::make_unique<CardEvents>().get());
    EXPECT_LT(io.given, 12 * file.size()) << part;
  }
}

TEST(Reading, OddFiles) {
  const std::string begin = "BEGIN:VCARD\nVERSION:3.0\n", end = "END:VCARD\n";
  const struct {
    std::string bytes, shown;
  } cases[] = {
      // The name of a blank one, and what stands behind it.
      {begin + "FN;QUOTED-PRINTABLE:=20\nN:Doe;Ann\n" + end, "\"name\":\"Ann Doe\""},
      {begin + "FN;BASE64:=\nORG:a=b\n" + end, "\"organisation\":[\"a=b\"]"},
      // One label names the group, the other shows itself.
      {begin + "a.TEL:5\na.X-ABLabel:first\na.X-ABLabel:second\n" + end, "Telephone (first)"},
      {begin + "a.TEL:5\na.X-ABLabel:first\na.X-ABLabel:second\n" + end, "    second"},
      // An escaped card stands in one line of the file.
      {begin + "AGENT:BEGIN:VCARD\\nFN:Tom\\nbad\\nEND:VCARD\n" + end, "3: no colon"},
      {begin + end + "\xEF\xBB\xBF" + begin + "FN:Tom\n" + end, "\"section\":2"},
      {begin + "PHOTO:data:image/png;base64,QUJD%2\n" + end, "3: the Base64 text ends within"},
      {"BEGIN:VCALENDAR\nBEGIN:VEVENT\nBEGIN:VALARM\nEND:VCALENDAR\nSUMMARY:x\nEND:VEVENT\n",
       "5: text outside"},
      // What is no text in the file is none behind it.
      {"BEGIN:V\xC9\nVERSION:\xFF\nEND:V\xC9\nBEGIN:VCALENDAR\nBEGIN:V\xC9\nEND:V\xC9\nEND:"
       "VCALENDAR\n",
       "\"component\":\"V\uFFFD\""},
      {begin + "NOTE;CHARSET=UCS-4:\0\x11\0\0\n"s + end, "\uFFFD"},
  };
  for (const auto &c : cases) {
    CountingIo io(c.bytes, UINT32_MAX);
    const std::string seen = readAll(&io);
    EXPECT_NE(seen.find(c.shown), seen.npos) << c.shown << " not in\n" << seen;
    bool cut;
    EXPECT_EQ(validUtf8Length(seen, &cut), seen.size()) << seen;
  }
}

}  // namespace
}  // namespace px::test

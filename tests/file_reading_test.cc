// Whole files read through the view or as they stand, seen as text and as JSON. What comes of many
// real and made cards is compared with another reading of them by jsonl_test.py.

#include "host/reading/file_reading.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/saving/content_type.h"
#include "host/source/source_view.h"
#include "host/source/utf8.h"
#include "host/writers/file_text.h"
#include "host/writers/json_writer.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

using namespace std::string_literals;

std::string contents(const std::filesystem::path &path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  return (std::stringstream() << file.rdbuf()).str();
}

std::string typeOf(const void *bytes, size_t size) {
  return std::string(guessContentType({static_cast<const char *>(bytes), size}).mime);
}

std::string faultsOf(VcardIo *io, Reading reading, CardEvents *events) {
  std::string faults;
  const FaultSink sink = [&](uint64_t line, const std::string &text) {
    faults += std::to_string(line) + ": " + text + "\n";
  };
  try {
    readFile(filter(), io, reading, sink, events);
  } catch (const std::runtime_error &error) {
    faults += error.what();
  }
  return faults;
}

std::string textOf(std::string_view file, Reading reading) {
  std::string text;
  FileText writer({}, typeOf, [&text](std::string_view piece) { text += piece; });
  MemoryIo io(file);
  EXPECT_EQ(faultsOf(&io, reading, &writer), "");
  writer.finish();
  return text;
}

// The lines for all sections, and the faults.
std::string jsonOf(std::string_view file, const MemoryIoOptions &options = {}) {
  std::string json;
  JsonWriter writer(JsonForm::Lines, typeOf, [&json](std::string_view piece) { json += piece; });
  MemoryIo io(file, options);
  const std::string faults = faultsOf(&io, Reading::Viewed, &writer);
  writer.flush();
  return json + faults;
}

TEST(FileReading, TextOfSamples) {
  const std::string samples = PX_SAMPLES "/", golden = PX_SAMPLES "/../tests/golden/";
  for (const std::string name : {"agent.vcf", "calendar.vcs", "folded.vcf"}) {
    EXPECT_EQ(textOf(contents(samples + name), Reading::Viewed), contents(golden + name + ".txt"));
  }
}

constexpr std::string_view PlainCard =
    "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Example;Ann;Maria;Dr;Jr\r\nFN:Ann Example\r\nTITLE:Boss\r\n"
    "ORG:Acme;Sales\r\nADR;WORK:;;1 Main St.;Town;ST;123;USA\r\nTEL;WORK;VOICE:+1 555 0100\r\n"
    "TEL;CELL:+1 555 0101\r\nEMAIL;INTERNET:ann@example.com\r\nURL:http://example.com/a\r\n"
    "NOTE;QUOTED-PRINTABLE:caf=C3=A9=0D=0Asecond\r\nX-FOO;HOME:bar; baz\r\n"
    "PHOTO;JPEG;BASE64:\r\n Sk1h\r\n RnJ=\r\n\r\nREV:20240102T030405Z\r\nEND:VCARD\r\n";

bool isReadInPlace(std::string_view file) {
  MemoryIo io(file);
  SourceView view(&io, [](uint64_t, const std::string &) {});
  ViewDocument document;
  return view.nextDocument(&document) && document.text.length == 0;
}

TEST(FileReading, APlainCardIsItsOwnView) {
  const std::string twice = std::string(PlainCard) + "\r\n" + std::string(PlainCard);
  EXPECT_EQ(textOf(twice, Reading::Viewed), textOf(twice, Reading::Raw));
  EXPECT_TRUE(isReadInPlace(twice));

  // One thing in a plain card that is not: the card has a view, and reads the same but for that.
  const std::string plain = jsonOf(PlainCard);
  const std::pair<std::string_view, std::string_view> changes[] = {
      {"2.1", "3.0"},
      {";Jr", ";"},
      {"Example;Ann", "Home;Ann"},
      {"TITLE:", "TITLE:end:"},
      {"St.;", "St=;"},
      {"CELL", "TYPE=CELL,HOME"},
      {"+1 555", "tel:+1 555"},
      {"ann@", "\xC3\xFC@"},
      {"http:", "tel:"},
      {"=C3=A9", "=\r\n=C3"},
      {"bar;", "b\r\n r;"},
      {"Sk1h", "S*1h"},
      {"X-FOO", "AGENT"},
      {"EMAIL", "BEGIN:VCARD\r\nEMAIL"},
      {"REV:2", "REV:;"},
      {"Boss", "Bo\tss"},
      {"N:Example", "X.N:Example"},
      {"TEL;WORK", "URL:a\r\nTEL;WORK"},
      {"TEL;WORK", "ADR:;;a\r\nTEL;WORK"},
      {"Example;Ann", "Tel;Ann"},
      {"Example;Ann", "End;Ann"},
      {"=0D=0A", "=0D"},
      {"X-FOO;HOME:bar; baz", "X-FOO;BASE64:QUI="},
      {"RnJ=", "RnJ=\r\n QUJD"},
      {"X-FOO", ""},
      {"REV:", "END:"}};
  for (const auto &[from, to] : changes) {
    std::string card(PlainCard);
    card.replace(card.find(from), from.size(), to);
    EXPECT_FALSE(isReadInPlace(card)) << to;
    EXPECT_NE(jsonOf(card), plain) << to;
  }
}

// More different heads than are kept, each of them several times.
TEST(FileReading, ManyHeads) {
  std::string card = "BEGIN:VCARD\r\nVERSION:3.0\r\n", shown;
  for (int i = 0; i < 3000; ++i) {
    const std::string number = std::to_string(i % 7 == 0 ? 1 : i * i % 1009);
    const std::string label = "X-" + number + " (A=" + number + ", B=c)";
    card += "X-" + number + ";A=" + number + ";B=c:v" + number + "\r\n";
    shown += label + std::string(26 - label.size(), ' ') + "v" + number + "\n";
  }
  EXPECT_EQ(textOf(card + "END:VCARD\r\n", Reading::Viewed),
            shown + "Version                   3.0\n");
}

// Values and heads beyond what is held in memory come whole, or the fault says what is missing.
TEST(FileReading, LargeThings) {
  std::string note;
  for (int i = 0; note.size() < 400'000; ++i) note += "Zeile " + std::to_string(i) + ": äöü; ";
  const std::string name = "N:" + note + ";\r\n";
  const std::string head = "BEGIN:VCARD\r\nVERSION:4.0\r\n";
  for (const std::string property : {"NOTE:", "X-LONG:", "TEL:", "LABEL;CHARSET=UTF-8:"}) {
    const std::string json = jsonOf(head + property + note + "\r\nEND:VCARD\r\n");
    EXPECT_NE(json.find("\"" + note + "\""), json.npos) << property << json.substr(0, 300);
  }
  const std::string json = jsonOf(head + name + "END:VCARD\r\n");
  EXPECT_NE(json.find("[\"Zeile 0: äöü\",\" Zeile 1: äöü\","), json.npos);
}

// A head beyond what is kept loses the ends of parameters, but no value, encoding or quote.
TEST(FileReading, LongHeads) {
  const std::string most(65'536, 'a');
  const struct {
    std::string line, params;
    bool isCut = true;
  } cases[] = {
      {"X;A=" + most + ";ENCODING=QUOTED-PRINTABLE:",
       "\"A\":[\"" + most.substr(4) + "\"],\"ENCODING\":[\"QUOTED-PRINTABLE\"]"},
      {"X;A=\"" + most + ";B=:\";ENCODING=QUOTED-PRINTABLE:",
       "\"A\":[\"" + most.substr(5) + "\"],\"ENCODING\":[\"QUOTED-PRINTABLE\"]"},
      {"X;A=" + most.substr(5) + "\u00E4;B=" + most + ";ENCODING=QUOTED-PRINTABLE:",
       "\"A\":[\"" + most.substr(5) + "\"],\"ENCODING\":[\"QUOTED-PRINTABLE\"]"},
      {"X;A=\"b;ENCODING=QUOTED-PRINTABLE:=41" + most + ":=",
       "\"A\":[\"b\"],\"ENCODING\":[\"QUOTED-PRINTABLE\"]", false},
  };
  for (const auto &c : cases) {
    const std::string json =
        jsonOf("BEGIN:VCARD\r\nVERSION:3.0\r\n" + c.line + "=41\r\nTEL:5\r\nEND:VCARD\r\n");
    EXPECT_NE(json.find("\"params\":{" + c.params + "},\"value\":\"A"), json.npos);
    EXPECT_NE(json.find("\"TEL\""), json.npos);
    EXPECT_EQ(json.substr(json.rfind('}') + 1),
              c.isCut ? "\n3: the line's head is too long: some of its parameters are cut or left "
                        "out\n"
                      : "\n3: a quote in the line's head isn't closed\n");
  }
}

// A card in escaped text may be folded anywhere.
TEST(FileReading, AnEscapedCardInFolds) {
  const std::string before = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann\r\n";
  const std::string agent =
      "AGENT:BEGIN:VCARD\\nVERSION:3.0\\nFN:Tom\\nTEL\\;TYPE=CELL:5\\nEND:VCARD\\n\r\n";
  const std::string behind = "NOTE:Ann's\r\nEND:VCARD\r\n";
  const std::string whole = textOf(before + agent + behind, Reading::Viewed);
  EXPECT_NE(whole.find("Ann's"), whole.npos);
  for (size_t at = 6; at < agent.size() - 1; ++at) {
    std::string folded = agent;
    folded.insert(at, "\r\n ");
    EXPECT_EQ(textOf(before + folded + behind, Reading::Viewed), whole) << folded;
  }
}

TEST(FileReading, AnInputThatFails) {
  CardEvents nothing;
  for (const Reading reading : {Reading::Viewed, Reading::Raw}) {
    MemoryIo io(PlainCard, {.failAt = 1, .failOn = true});
    EXPECT_NE(faultsOf(&io, reading, &nothing), "");
  }
}

// The filter takes it for the end of the input.
TEST(FileReading, ATemporaryFileThatFails) {
  struct Emptied : CardEvents {
    void beginSection(const px::Section &) override {
      for (const auto &open : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code none;
        if (read_symlink(open.path(), none).string().ends_with("(deleted)"))
          std::filesystem::resize_file(open.path(), 0, none);
      }
    }
  } events;
  const std::string note(1'000'000, 'a');
  const std::string card = "BEGIN:VCARD\nVERSION:4.0\nNOTE:" + note + "ö\nEND:VCARD\n";
  MemoryIo io(card);
  EXPECT_NE(faultsOf(&io, Reading::Viewed, &events).find("temporary file"), card.npos);
}

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
  JsonWriter jsonWriter(JsonForm::Lines, typeOf, [&](auto part) { json += part; });
  FileText textWriter(TextLook(), typeOf, [&](auto part) { text += part; });
  readFile(filter(), io, Reading::Viewed, fault, &jsonWriter);
  jsonWriter.flush();
  readFile(
      filter(), io, Reading::Viewed, [](auto, auto &) {}, &textWriter);
  textWriter.finish();
  return faults + json + text;
}

// Neither the size of reads nor the place at which a buffer ends makes a difference.
TEST(FileReading, AnyReadsGiveTheSame) {
  size_t files = 0;
  for (const char *folder : {PX_SAMPLES, PX_SAMPLES "/../tests/cards"}) {
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
      std::ifstream file(entry.path());
      const std::string bytes(std::istreambuf_iterator<char>(file), {});
      CountingIo whole(bytes, UINT32_MAX);
      const std::string expected = readAll(&whole);
      for (const uint32_t size : {1U, 7U, 30U}) {
        CountingIo io(bytes, size);
        expectSameText(expected, readAll(&io),
                       entry.path().string() + " in reads of " + std::to_string(size));
      }
      ++files;
    }
  }
  EXPECT_GT(files, 10U);
}

// However many cards and components there are, the bytes are read a few times.
TEST(FileReading, EachByteAFewTimes) {
  const std::pair<std::string, std::string> parts[] = {
      {"", "BEGIN:VCARD\nVERSION:3.0\nFN:Ann\nEND:VCARD\n"},
      {"BEGIN:VCARD\n", "AGENT:\nBEGIN:VCARD\nFN:Ann\nEND:VCARD\n"},
      {"BEGIN:VCARD\n", "X;A=\"b:c\n\n d:e\nNOTE;QUOTED-PRINTABLE:a=\nTEL:1\n"},
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

TEST(FileReading, OddFiles) {
  const auto inUtf16 = [](std::string_view ascii) {
    std::string units;
    for (const char c : ascii) (units += '\0') += c;
    return units;
  };
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
      // A plain card is read where it stands, and shows types that its calls don't tell.
      {"BEGIN:VCARD\nVERSION:2.1\nNOTE;HOME:x\n" + end, "Note (home)"},
      // An escaped card stands in one line of the file.
      {begin + "AGENT:BEGIN:VCARD\\nFN:Tom\\nbad\\nEND:VCARD\n" + end, "3: no colon"},
      {begin + end + "\xEF\xBB\xBF" + begin + "FN:Tom\n" + end, "\"section\":2"},
      {begin + "PHOTO:data:image/png;base64,QUJD%2\n" + end, "3: the Base64 text ends within"},
      {"BEGIN:VCALENDAR\nBEGIN:VEVENT\nBEGIN:VALARM\nEND:VCALENDAR\nSUMMARY:x\nEND:VEVENT\n",
       "5: text outside"},
      // A head that both versions have is read by the rules of each.
      {begin + "NOTE;X=a^^b:1\n" + end + "BEGIN:VCARD\nVERSION:4.0\nNOTE;X=a^^b:1\n" + end,
       "\"X\":[\"a^b\"]"},
      {begin + "NOTE;CHARSET=KOI8-R//IGNORE:\xC1\n" + end, "KOI8-R//IGNORE is not known"},
      // What is no text in the file is none behind it.
      {"BEGIN:V\xC9\nVERSION:\xFF\nEND:V\xC9\nBEGIN:VCALENDAR\nBEGIN:V\xC9\nEND:V\xC9\nEND:"
       "VCALENDAR\n",
       "\"component\":\"V\uFFFD\""},
      {"\xFE\xFF" + inUtf16("BEGIN:VCARD\nFN:A") + "\xDC\x01" + inUtf16("\nEND:VCARD\n"),
       "1: the file holds units that are no text"},
      {"\xFE\xFF" + inUtf16("BEGIN:VCARD\nFN:A") + "\xD8\x01" + inUtf16("\nEND:VCARD\n"),
       "1: the file holds units that are no text"},
      {begin + "NOTE;CHARSET=UCS-4:\0\x11\0\0\n"s + end, "\uFFFD"},
      // Each byte that is none is told, and a character that is cut off once.
      {begin + "NOTE;CHARSET=SHIFT_JIS:\x93\xFA\x81 b\x96\n" + end, "\"\u65E5\uFFFD b\uFFFD\""},
      {begin + "X;A=\xE4:1\n" + end, "\"A\":[\"\u00E4\"]"},
      {begin + "X;A=\x81:1\n" + end, "3: bytes in the line's head that are no text"},
      {begin + "N:a\x1F;b\n" + end, "[\"a\uFFFD\",\"b\""},
      {"\xFE\xFF" + inUtf16(begin + "NOTE:" + std::string(100'000, 'a') + "\n" + end + begin + end),
       "\"offset\":200082,"},
      // Blanks between lines and in a name, an escape that is none, and folds among escapes.
      {" " + begin + end, "\"offset\":1,"},
      {begin + "N O TE:x\n" + end, "\"label\":\"Note\",\"value\":\"x\",\"offset\":24"},
      {begin + "NOTE;QUOTED-PRINTABLE:=c3=a4; a=b = c=4x\n" + end, "\"\u00E4; a=b = c=4x\""},
      {"BEGIN:VCARD\nVERSION:2.1\nNOTE;QUOTED-PRINTABLE:=61=\n b\n c\n" + end, "\"a b c\""},
      // What is told in Base64 is text or, if it is long or no text's, an object.
      {begin + "NOTE;BASE64:SGFsbG8=\n" + end, "\"Hallo\""},
      {begin + "NOTE;BASE64:" + std::string(400'000, 'A') + "\n" + end, "\"size\":300000"},
      {begin + "X:data:image/png;base64,QUJDRA%3D%3d\n" + end, "\"type\":\"image/png\",\"size\":4"},
      {begin + "NOTE;BASE64:Just four plain words.\n" + end,
       "\"value\":\"Just four plain words.\""},
      {begin + "NOTE;ENCODING=b:Five words without a stop\n" + end,
       "3: the value is no Base64 text: shown as it stands"},
      {begin + "PHOTO;BASE64:=\n" + end, "\"value\":\"\""},
      {begin + "BEGIN:\nFN:a\n" + end, "3: BEGIN of nothing"},
      {begin + "AGENT:BEGIN:VCARD\nFN:Tom\nEND:VCARD\nFN:Ann\n" + end,
       "\"agentOf\":1,\"summary\":{\"name\":\"Tom\"}"},
      {begin + "AGENT:\n " + begin + " FN:Tom\n END:VCARD\nFN:Ann\n" + end,
       "\"agentOf\":1,\"summary\":{\"name\":\"Tom\"}"},
      // Behind an agent's card that has ended, another one is nobody's.
      {begin + "AGENT:BEGIN:VCARD\nFN:Tom\nEND:VCARD\n" + begin + "FN:Ann\n" + end,
       "1: VCARD without END"},
      // In a row of types an address has room for its lines.
      {begin + "X;X-ADDRESS=\"a\\nb\":c\n" + end, "X (X-ADDRESS=a b)"},
      // A tab is text, also where the fields come in one, whose calls are cut at 4096 characters.
      {begin + "ADR:;;a\tb\t" + std::string(300, 'c') + "\n" + end, ",\"a\\tb\\tccc"},
      {begin + "ADR:;;" + std::string(4094, 'c') + "\td\n" + end, "ccc\\td\",\""},
      {begin + "ADR:;;" + std::string(4095, 'c') + "\td\n" + end, "ccc\\td\",\""},
      {begin + "ADR:;;One;;;;\nADR;TYPE=intl:;;Two;;;;\n" + end, "[\"Two\",\"\",\"One\"]"},
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

// The parts of the reference host, each alone.

#include <sys/mman.h>

#include "host/base64_io.h"
#include "host/character_sets.h"
#include "host/file_io.h"
#include "host/label_texts.h"
#include "host/range_io.h"
#include "host/save_directory.h"
#include "host/sniffer.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

using namespace std::string_literals;

std::string readAll(VcardIo *io, uint32_t size) {
  std::string content;
  char buffer[64];
  for (uint32_t count = 1; count > 0;) {
    EXPECT_EQ(io->Read(io, buffer, size, &count), 0);
    content.append(buffer, count);
  }
  return content;
}

TEST(Host, Base64) {
  const struct {
    std::string text, decoded;
    int badAt = -1;  // position of the byte that is no Base64
  } cases[] = {
      {"QUJD", "ABC"},
      {" Q\tU\r\n\r\n J\nDRA==", "ABCD"},
      {"QUJDRA", "ABCD"},
      {"QUJDR", "ABC"},
      {"QUI=QUJD*", "AB"},
      {"+/+/", "\xFB\xFF\xBF"},
      {"", ""},
      // Not white space here, not the other alphabet, not beyond ASCII.
      {"QUJDQUI*QUJD", "ABCAB", 7},
      {"QUJD\vQUJD", "ABC", 4},
      {"QUJD\fQUJD", "ABC", 4},
      {"QUJD\r\nQUJ\xC3QQ", "ABCAB", 9},
      {"-_", "", 0},
      {"QUJD\0QUJD"s, "ABC", 4},
      // The last byte at the head of a line is the next line's.
      {"QUJDRA\r\nT", "ABCD"},
      {"QUJDRA\r\n:", "ABCD"},
      {"QUJDR\nA", "ABC"},
      {"QUJDR\nA\n", "ABCD"},
      {"QUJDR\nA=", "ABCD"},
      {"QUJDR\n A", "ABCD"},
  };
  for (const auto &c : cases) {
    for (const uint32_t size : {1U, 2U, 64U}) {
      MemoryIo source(c.text, {.largestRead = size});
      VcardDecodeSpec record = {&source, 0, 2, {}};
      VcardIo *io = nullptr;
      ASSERT_EQ(openIo(&io, VcardIoOpenDecode, &record, VcardIoOpenFlags), 0);
      EXPECT_EQ(readAll(io, size), c.decoded) << c.text;
      const BadBase64Byte bad = badBase64Byte(io);
      EXPECT_EQ(bad.found ? int(bad.position) : -1, c.badAt) << c.text;
      EXPECT_EQ(bad.byte, c.badAt < 0 ? 0 : uint8_t(c.text[size_t(c.badAt)])) << c.text;
      EXPECT_EQ(io->Seek(io, 0, 1), 0);
      EXPECT_EQ(readAll(io, size), c.decoded.substr(c.decoded.empty() ? 0 : 1)) << c.text;
      io->Close(io);
      EXPECT_FALSE(badBase64Byte(&source).found);
    }
  }
}

TEST(Host, Ranges) {
  MemoryIo source("abcdef", {.largestRead = 2});
  const std::pair<VcardRangeSpec, const char *> cases[] = {
      {{&source, 1, 3}, "bcd"}, {{&source, 0, 6}, "abcdef"}, {{&source, 4, 100}, "ef"},
      {{&source, 6, 5}, ""},    {{&source, 9, 1}, ""},       {{&source, 2, 0}, ""}};
  for (auto [range, text] : cases) {
    VcardIo *io = nullptr;
    ASSERT_EQ(openIo(&io, VcardIoOpenRange, &range, VcardIoOpenFlags), 0);
    EXPECT_EQ(readAll(io, 64), text);
    io->Close(io);
  }
}

TEST(Host, OpenRefuses) {
  MemoryIo source("abc");
  VcardRangeSpec range = {&source, 1, 1}, none = {nullptr, 1, 1}, far = {&source, 2, INT64_MAX};
  VcardDecodeSpec noSource = {nullptr, 0, 2, {}}, otherKind = {&source, 0, 3, {}};
  const std::pair<uint32_t, void *> cases[] = {{7, &range}, {8, nullptr},    {8, &none},
                                               {8, &far},   {19, &noSource}, {19, &otherKind}};
  for (const auto &[type, record] : cases) {
    VcardIo *io = &source;
    EXPECT_NE(openIo(&io, type, record, VcardIoOpenFlags), 0);
    EXPECT_EQ(io, &source);
  }
}

TEST(Host, Sniffer) {
  const std::string far(65500, '\n');
  const std::pair<std::string, bool> cases[] = {{"\r\n\t begin : vCal\r\n endar\n", true},
                                                {"BEGIN:VCARD\r\nBEGIN:VCALENDAR\r\n", false},
                                                {"BEGIN:VCALENDA", false},
                                                {"xBEGIN:VCALENDAR", false},
                                                {far + "BEGIN:VCALENDAR", true},
                                                {far + far + "BEGIN:VCALENDAR", false}};
  for (const auto &[text, calendar] : cases) {
    MemoryIo io(text, {.largestRead = 1000});
    EXPECT_EQ(sniffFormat(&io), calendar ? VcardFormatVcalendar : VcardFormatVcard);
  }
}

TEST(Host, EveryStringIdHasAText) {
  const struct {
    uint32_t first, last;
  } known[] = {{79355, 79362}, {79364, 79388}, {79391, 79454}, {79493, 79493}, {79543, 79543},
               {79609, 79609}, {79745, 79745}, {85562, 85562}, {85564, 85564}};
  for (const auto &ids : known) {
    for (uint32_t id = ids.first; id <= ids.last; ++id) EXPECT_NE(labelText(id), "") << id;
  }
  for (const uint32_t id : {0U, 79354U, 79363U, 79390U, 85563U, 85565U})
    EXPECT_EQ(labelText(id), "");
}

TEST(Host, CharacterSets) {
  constexpr uint32_t d = SoCharsetDefault, u = SoCharsetUtf8, w = SoCharsetWindows1251;
  const struct {
    uint32_t set;
    std::vector<uint16_t> codes;
    const char *utf8;
  } cases[] = {
      {d, {'a', 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80}, "aé€😀"},
      {d, {0xE9, 't', 0x80, 0x81}, "ét€\uFFFD"},
      {d, {0xE2, 0x82, 'x', 0xC3}, "â‚xÃ"},
      {d, {0xC0, 0xAF}, "À¯"},              // longer than need be
      {d, {0xE0, 0x9F, 0xBF}, "àŸ¿"},       // likewise
      {d, {0xED, 0xA0, 0xBD}, "í\u00A0½"},  // half a pair
      {d, {0xF4, 0x90, 0xF5, 0xC3, 0xC3, 0xA9}, "ô\uFFFDõÃé"},
      {d, {0xC3, 0x20AC}, "Ã\uFFFD"},
      {0x30200, {0xC3, 0xA9}, "é"},
      {u, {0x41, 0xE9, 0x20AC, 0xFFFF, 0xD83D}, "Aé€\uFFFD\uFFFD"},
      {w, {0x41, 0xCF, 0xB9, 0x98, 0x100}, "AП№\uFFFD\uFFFD"},
  };
  for (const auto &c : cases) {
    std::string text;
    CharacterDecoder decoder;
    decoder.setCharset(c.set, &text);
    for (const uint16_t code : c.codes) decoder.put(code, &text);
    decoder.setCharset(d, &text);
    EXPECT_EQ(text, c.utf8);
  }
}

TEST(Host, FileNames) {
  std::string wide;
  while (wide.size() < 300) wide += "é";
  const struct {
    std::string text, extension, name;
  } cases[] = {{"C:\\x\\y.doc", ".doc", "y.doc"},
               {"/abs/", ".bin", ""},
               {".jpg", ".jpg", ""},
               {"-rf", "", "rf"},
               {"naïve .", ".pdf", "naïve.pdf"},
               {"a\n\u2028\u202Egpj.", ".gif", "a___gpj.gif"},
               {wide, ".png", wide.substr(0, 250) + ".png"}};
  for (const auto &c : cases) EXPECT_EQ(safeFileName(c.text, c.extension), c.name) << c.text;
}

// A read past the largest input is a failure that a program can see.
TEST(Host, LargestFile) {
  for (const bool larger : {false, true}) {
    FileDescriptor file(memfd_create("px", 0));
    ASSERT_EQ(ftruncate(file.number(), off_t(LargestInput) + larger), 0);
    FileIo io(std::move(file));
    char buffer[8];
    uint32_t count = 0;
    EXPECT_EQ(io.Seek64(&io, 0, LargestInput - 2), 0);
    EXPECT_EQ(io.Read(&io, buffer, 8, &count), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(io.Read(&io, buffer, 8, &count) != 0, larger);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(io.error(), larger ? EFBIG : 0);
  }
}

}  // namespace
}  // namespace px::test

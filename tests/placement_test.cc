#include "tests/support/runs.h"

namespace px::test {
namespace {

using namespace std::literals;

// Objects as "object(start,length)", attachments as "attachment(start,end,id)" with their titles.
std::string withoutRecords(const std::string &text) {
  std::string rest = text;
  const std::string_view base = "GetObjectBase() SetObjectData(";
  for (size_t at; (at = rest.find(base)) != rest.npos;) {
    // What stands between the next `from` and the `to` behind it, which are taken.
    const auto between = [&rest, at](std::string_view from, std::string_view to) -> std::string {
      const size_t begin = rest.find(from, at), end = rest.find(to, begin + from.size());
      if (begin != at || end == rest.npos) return "?";
      const std::string found = rest.substr(begin + from.size(), end - begin - from.size());
      rest.erase(begin, end + to.size() - begin);
      return found;
    };
    std::string shown;
    if (rest.compare(at + base.size(), 2, "8,") == 0) {
      shown = "object(" + between("GetObjectBase() SetObjectData(8,",
                                  ") SetObjectData(8192,2,0) CommitObjectData() EmitObject({");
      between("", "})");
      shown += ")";
    } else {
      shown =
          "attachment(" + between("GetObjectBase() SetObjectData(256,", ") CommitObjectData() ");
      const std::string id = between("BeginDefinition(0x8003000C,", ",{0,0,0})");
      shown += "," + id + ")" + between("", " EndDefinition(0x8003000C," + id + ")");
    }
    if (shown.find('?') != shown.npos) return shown + " in " + text;
    rest.insert(at, shown);
  }
  return rest;
}

const std::string kPhoto = "[body] [label] #79402 br [plain] ";
const std::string kTel = " [body] [label] #79406 [plain] br [plain] tab tab d\"5\" br para";
std::string generic(const std::string &name) {
  return " [body] [label] d\"" + name + "\" [plain] br tab tab \"x\" br para";
}

// The value begins at 26.
TEST(Placement, Extents) {
  const Examples cases = {
      {"AAAA==\r\n\r\nTEL:5\r\n", "object(26,8) br para" + kTel},
      {"AAAA\r\n\r\nTEL:5\r\n", "object(26,9) br para" + kTel},
      {"\r\nAAAA\r\nTEL:5\r\n", "object(28,7) br para" + kTel},
      {" \t\r\n AAAA\r\nTEL:5\r\n", "object(31,7) br para" + kTel},
      {"AAAA\r\n BBBB\r\n\tCC\r\nTEL:5\r\n", "object(26,19) br para" + kTel},
      {"AA*AB:x\r\n", "object(26,4) br para" + generic("AB")},
      {"AAAA\r\nAA*A:x\r\n", "object(26,7) br para" + generic("AA*A")},
      {"AAAA\r\n*AAA\r\nTEL:5\r\n", "object(26,13) br para" + kTel},
      {"AAAA\r\nAAAA\r\nTEL;X=1:5\r\n", "object(26,13) br para" + kTel},
      {"AAAA\r\nX=Y:Z\r\nTEL:5\r\n", "object(26,13) br para" + kTel},
      {"AA\0B:x\r\n"s, "object(26,4) br para" + generic("B")},
      {"AAAA\r\nA\0B:x\r\n"s, "object(26,9) br para" + generic("B")},
      {"AA=A\0B:x\r\n"s, "object(26,6) br para" + generic("B")},
      {"AAAA\nA\x80\nTEL:5\n", "object(26,9) br para" + kTel},
      {"AAAA\nA\x81\nTEL:5\n", "object(26,6) br para" + kTel},
      {"A\xFFTEL:5\n", "object(26,3) br para" + kTel},
      {"+/09azAZ\n-\n-AAA:x\n", "object(26,12) br para" + generic("-AAA")},
      {"AAAA", "object(26,5) br para"},
      {"AAAA\r\n", "object(26,7) br para"},
      {"AAAA==", "object(26,7) br para"},
  };
  for (const auto &[text, expected] : cases) {
    const auto card = sections("BEGIN:VCARD\r\nPHOTO;BASE64:" + text);
    EXPECT_EQ(withoutRecords(card[0].listing), kPhoto + expected + " end") << text;
  }
}

TEST(Placement, EachByteInsideTheText) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text =
        std::string("AA") + static_cast<char>(byte) + std::string(18, 'A') + ":x\n";
    // 128 passes for Base64; behind "=" the rest of the line belongs to the extent.
    const bool isText = byte == 128 || byte == '+' || byte == '/' || (byte < 128 && isalnum(byte));
    const std::string length = isText ? "23" : byte == '=' ? "25" : "4";
    EXPECT_TRUE(withoutRecords(listing("PHOTO;BASE64:" + text))
                    .starts_with(kPhoto + "object(26," + length + ") br para"))
        << byte;
  }
}

// Without further parameters the value begins at 38.
TEST(Placement, Attachments) {
  const std::string attach = "[body] [label] #79361 br [plain] ";
  const Examples cases = {
      {":AAAA\n", "attachment(38,43,1) #79493 br br para"},
      {";X-FILENAME=a.doc:AAAA\n", R"(attachment(55,60,1) "a.doc" br para)"},
      {";CHARSET=utf-8;x-FileName=\xC3\xA9:AA==\n", R"(attachment(66,71,1) "<C3><A9>" br para)"},
      {";X-FILENAME=:AAAA\n", "attachment(50,55,1) br para"},
      {";X-FILENAME=a;X-B=1:AAAA\n", "attachment(57,62,1) #79493 br br para"},
      {";X-FILENAMES=a:AAAA\n", "attachment(52,57,1) #79493 br br para"},
  };
  for (const auto &[text, expected] : cases) {
    const std::string line = "ATTACH;BINARY;BASE64" + text;
    EXPECT_EQ(withoutRecords(listing(line, VcardFormatVcalendar)), attach + expected) << line;
  }

  const std::string event = "BEGIN:VCALENDAR\nATTACH;BINARY;BASE64:AA==\nEND:E\n";
  const auto events = sections(event + event, VcardFormatVcalendar);
  EXPECT_EQ(withoutRecords(events.at(1).listing),
            attach + "attachment(85,90,2) #79493 br br para end");
}

TEST(Placement, References) {
  const std::string lead = kPhoto + "[list] [sub] tab";
  const Examples cases = {
      {"URL: =41\tx\n", R"( #79386 tab [plain] d" =41" tab "x" br)"},
      {"CID;CHARSET=utf-8;BASE64:\xC3\xA9\n", R"( #79387 tab [plain] u"<E9>" d br)"},
      {"URL;QUOTED-PRINTABLE:=41\nPHOTO;VALUE=CONTENT-ID:\n",
       R"( #79386 tab [plain] d"=41" br )" + lead + " #79387 tab [plain] d br"},
      // The value of another kind is left to the parser.
      {"VALUE=X-A:x\nTEL:5\n", kTel},
      {"BINARY;BASE64:TEL:5\n", kTel},
  };
  for (const auto &[text, expected] : cases) {
    EXPECT_EQ(listing("PHOTO;" + text), lead + expected) << text;
  }
}

TEST(Placement, Records) {
  // A host with a value of its own for the records.
  struct : Recorder {
    uint32_t getObjectBase() override { return 77; }
  } recorder;
  MemoryIo io("BEGIN:VCALENDAR\nKEY;BASE64:AA==\nATTACH;BASE64;BINARY:AA==\nEND:VCALENDAR\n");
  CardRun cardRun(filter(), &io, &recorder);
  ASSERT_EQ(cardRun.open(VcardFormatVcalendar), VcardOpenGood);
  cardRun.readAll();
  const std::string calls = brief(recorder.trace);
  EXPECT_NE(calls.find("EmitObject({196,0,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1,0,0,"
                       "0,0,1,0,0,4,0,0,0,0,77,0xFFFFFFFF,0,0,0,0,0,0,0xFFFFFFFF})"),
            std::string::npos);
  EXPECT_NE(calls.find("BeginDefinition(0x8003000C,1,{0,77,0})"), std::string::npos);
}

}  // namespace
}  // namespace px::test

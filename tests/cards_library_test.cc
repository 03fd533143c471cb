// libpx_cards from the outside: its header, bytes in, texts, events and results out.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <clocale>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <new>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "px/cards.h"
#include "px/vcrd.h"

// The allocation of this number fails, counted from 1 on the thread that set it, and all behind it.
static thread_local long failingAllocation = 0;

void *operator new(size_t size) {
  if (failingAllocation < 0 || (failingAllocation > 0 && --failingAllocation == 0)) {
    failingAllocation = -1;
    throw std::bad_alloc();
  }
  void *memory = std::malloc(size);
  if (!memory) throw std::bad_alloc();
  return memory;
}
void *operator new[](size_t size) { return operator new(size); }
void *operator new(size_t size, const std::nothrow_t &) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, size_t) noexcept { std::free(memory); }
void operator delete[](void *memory) noexcept { std::free(memory); }
void operator delete[](void *memory, size_t) noexcept { std::free(memory); }

namespace {

// "Hello, card" and "GIF89a".
const std::string kObjects =
    "BEGIN:VCARD\nVERSION:3.0\nFN:Ann\n"
    "PHOTO;ENCODING=b:SGVsbG8sIGNhcmQ=\nLOGO;ENCODING=b:R0lGODlh\nEND:VCARD\n";
const std::string kTwo = kObjects + "BEGIN:VCARD\nVERSION:3.0\nN:Bo;Bob;;;\nEND:VCARD\n";
const std::string kCalendar =
    "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nSUMMARY:Meeting\nEND:VEVENT\nEND:VCALENDAR\n";

struct Reader {
  std::string bytes;
  PxReader *p = PxNewReader();
  ~Reader() { PxFreeReader(&p); }
  std::string error() const { return PxErrorText(p); }
  int32_t open(std::string text) {
    PxClose(p);
    bytes = std::move(text);
    return PxOpenMemory(p, bytes.data(), bytes.size());
  }

  // All sections that are left, a line each; `*last` is what ended them.
  std::string json(int32_t *last) {
    std::string lines;
    PxText text;
    while ((*last = PxReadJson(p, &text)) == PxGood) lines.append(text.bytes, text.size) += '\n';
    return lines;
  }
  std::string object(uint64_t handle, int32_t *last, uint64_t step = 4) {
    std::string content;
    char piece[64];
    uint64_t count;
    while ((*last = PxReadObject(p, handle, piece, step, &count)) == PxGood) {
      content.append(piece, count);
    }
    return content;
  }
};

// An I/O object of a caller who has nothing but what is needed.
struct Io : VcardIo {
  explicit Io(std::string text) : VcardIo{}, bytes(std::move(text)) {
    Read = [](VcardIo *io, void *to, uint32_t size, uint32_t *count) -> int32_t {
      Io &self = *static_cast<Io *>(io);
      if (self.inside) self.inside();
      const uint64_t rest = self.bytes.size() - std::min<uint64_t>(self.at, self.bytes.size());
      *count = static_cast<uint32_t>(std::min<uint64_t>({size, rest, self.most}));
      std::memcpy(to, self.bytes.data() + self.bytes.size() - rest, *count);
      self.at += *count;
      return ++self.reads >= self.failFrom ? -1 : 0;
    };
    Seek = [](VcardIo *io, uint16_t, uint64_t position) -> int32_t {
      static_cast<Io *>(io)->at = position;
      return 0;
    };
    GetInfo = [](VcardIo *, uint32_t, void *) -> int32_t { return -1; };
  }
  std::string bytes;
  uint64_t at = 0;
  uint64_t most = 7;  // bytes that a read gives
  int reads = 0, failFrom = INT32_MAX;
  std::function<void()> inside;  // a read
};

// What a sink was given, which wants no more behind the call with the number `most`.
struct Written {
  std::string text;
  int calls = 0, most = INT32_MAX;
  static int32_t sink(void *user, const char *bytes, uint64_t size) {
    Written &self = *static_cast<Written *>(user);
    self.text.append(bytes, size);
    return ++self.calls >= self.most ? 1 : 0;
  }
};

std::string str(const PxText &text) { return {text.bytes, text.size}; }

// Writes events as one short line each.
struct Events : PxEvents {
  std::vector<std::string> lines;
  size_t stopAt = SIZE_MAX;
  std::function<void(const PxObjectInfo &)> onObject;

  int32_t add(std::string line) {
    lines.push_back(std::move(line));
    return lines.size() == stopAt ? 1 : 0;
  }
  std::string all() const {
    std::string joined;
    for (const std::string &line : lines) joined += line + '|';
    return joined;
  }
  static Events &of(void *user) { return *static_cast<Events *>(user); }

  Events() : PxEvents{} {
    size = sizeof(PxEvents);
    beginSection = [](void *user, const PxSection *section) {
      return of(user).add("section " + std::to_string(section->number) + " " +
                          str(section->component) + " " + str(section->version) + " " +
                          std::to_string(section->extent.offset));
    };
    beginSummaryLine = [](void *user, int32_t kind, int32_t) {
      return of(user).add("line " + std::to_string(kind));
    };
    endSummaryLine = [](void *user, const PxText *types, uint64_t count) {
      std::string line = "end line";
      for (uint64_t i = 0; i < count; ++i) line += " " + str(types[i]);
      return of(user).add(line);
    };
    beginProperty = [](void *user, const PxProperty *property) {
      std::string line = "property " + std::to_string(property->label) + " " + str(property->name);
      for (uint64_t i = 0; i < property->parameterCount; ++i) {
        line += ";" + str(property->parameters[i]->name);
        for (uint64_t j = 0; j < property->parameters[i]->valueCount; ++j) {
          line += (j ? "," : "=") + str(property->parameters[i]->values[j]);
        }
      }
      return of(user).add(line);
    };
    beginField = [](void *user, uint32_t label) {
      return of(user).add("field " + std::to_string(label));
    };
    text = [](void *user, const char *bytes, uint64_t count) {
      return of(user).add("text " + std::string(bytes, count));
    };
    lineBreak = [](void *user) { return of(user).add("break"); };
    object = [](void *user, const PxObjectInfo *info) {
      if (of(user).onObject) of(user).onObject(*info);
      return of(user).add("object " + std::to_string(info->number) + " " +
                          std::to_string(info->size) + " at " +
                          std::to_string(info->extent.offset));
    };
    lateParameter = [](void *user, const PxParameter *late) {
      return of(user).add("late " + str(late->name) + "=" + str(late->values[0]));
    };
    endProperty = [](void *user) { return of(user).add("end property"); };
    endSection = [](void *user) { return of(user).add("end section"); };
  }
};

std::string samplePath(const char *name) { return std::string(PX_SAMPLES "/") + name; }

std::string contentOf(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(CardsLibrary, EveryWayInGivesTheSame) {
  for (const auto &entry : std::filesystem::directory_iterator(PX_SAMPLES)) {
    const std::string path = entry.path(), bytes = contentOf(path);
    Reader file, memory, caller, pieces;
    Io io(bytes);
    ASSERT_EQ(PxOpenFile(file.p, path.c_str()), PxGood) << file.error();
    ASSERT_EQ(memory.open(bytes), PxGood);
    ASSERT_EQ(PxOpenIo(caller.p, &io), PxGood);
    for (Reader *reader : {&memory, &caller}) PxSetName(reader->p, path.c_str());
    int32_t last;
    const std::string lines = file.json(&last);
    EXPECT_EQ(last, PxEnd) << path << file.error();
    EXPECT_EQ(lines, memory.json(&last)) << path;
    EXPECT_EQ(lines, caller.json(&last)) << path;

    // Without a name there is none in the text.
    const std::string named = "{\"file\":\"" + path + "\",";
    std::string nameless = lines;
    for (size_t at; (at = nameless.find(named)) != nameless.npos;) {
      nameless.replace(at, named.size(), "{");
    }
    memory.open(bytes);
    EXPECT_EQ(nameless, memory.json(&last)) << path;

    Written joined;
    PxOpenFile(pieces.p, path.c_str());
    while (PxWriteJson(pieces.p, Written::sink, &joined) == PxGood) joined.text += '\n';
    EXPECT_EQ(lines, joined.text) << path;
  }
}

TEST(CardsLibrary, TellsEvents) {
  Reader reader;
  Events events;
  reader.open("BEGIN:VCARD\nVERSION:3.0\nN:Example;Ann\nTEL;TYPE=work,x:1\\n2\nEND:VCARD\n");
  ASSERT_EQ(PxReadEvents(reader.p, &events, &events), PxGood);
  EXPECT_EQ(
      events.all(),
      "section 1 VCARD 3.0 0|line 0|text Ann Example|end line|line 4|text 1 2|end line work x|"
      "property 79411 VERSION|text 3.0|end property|"
      "property 79399 N|field 79412|text Example|field 79413|text Ann|field 79414|field 79415|"
      "field 79416|end property|"
      "property 79406 TEL;TYPE=work,x|text 1|break|text 2|end property|end section|");
  EXPECT_EQ(PxReadEvents(reader.p, &events, &events), PxEnd);

  // The calls alone tell an attendee's parameters behind the value.
  Events raw;
  PxSetRaw(reader.p, 1);
  reader.open("BEGIN:VCALENDAR\nATTENDEE;ROLE=OWNER;STATUS=SENT:Ann\nEND:VCALENDAR\n");
  PxSetRaw(reader.p, 0);
  ASSERT_EQ(PxReadEvents(reader.p, &raw, &raw), PxGood);
  EXPECT_NE(raw.all().find("|text Ann|late ROLE=OWNER|late STATUS=SENT|end property|"),
            std::string::npos)
      << raw.all();

  // Stopped at any event, it tells no other, and the next section is whole.
  std::vector<std::string> second;
  for (size_t stop = 1;; ++stop) {
    Events stopped, whole;
    stopped.stopAt = stop;
    reader.open(kTwo);
    const int32_t result = PxReadEvents(reader.p, &stopped, &stopped);
    ASSERT_EQ(PxReadEvents(reader.p, &whole, &whole), PxGood);
    if (second.empty()) second = whole.lines;
    EXPECT_EQ(whole.lines, second);
    if (result == PxGood) break;
    EXPECT_EQ(result, PxStopped);
    EXPECT_EQ(stopped.lines.size(), stop);
  }
  EXPECT_EQ(second.back(), "end section");
}

// Programs are older or newer than the library: by the size of their records, which tells what they
// know of.
TEST(CardsLibrary, RecordsGrow) {
  constexpr size_t first = offsetof(PxEvents, endSection) + sizeof(PxEvents::endSection);
  struct {
    PxEvents known;
    void *further[2];
  } events{};
  struct {
    PxLook known;
    uint64_t further;
  } look{{sizeof look, 80, 0}, 0};
  Events whole;
  events.known = whole;
  Reader reader;
  Written text;
  const auto read = [&](uint64_t size, Events *to) {
    events.known.size = size;
    reader.open(kTwo);
    return PxReadEvents(reader.p, &events.known, to);
  };
  const auto write = [&](uint64_t size) {
    look.known.size = size;
    reader.open(kTwo);
    return PxWriteText(reader.p, &look.known, Written::sink, &text);
  };
  ASSERT_EQ(read(sizeof events.known, &whole), PxGood);
  for (uint64_t size = first; size <= sizeof events; size += sizeof(void *)) {
    Events told;
    EXPECT_EQ(read(size, &told), PxGood) << size;
    EXPECT_EQ(told.lines, whole.lines) << size;
  }
  EXPECT_EQ(write(sizeof look.known), PxGood);
  EXPECT_EQ(write(sizeof look), PxGood);
  for (const uint64_t size : {uint64_t{0}, uint64_t{first - 8}, uint64_t{first + 4}, UINT64_MAX}) {
    EXPECT_EQ(read(size, &whole), PxErrorArgument) << size;
    EXPECT_EQ(write(size), PxErrorArgument) << size;
  }
  // What a newer program asks for and isn't there is told.
  events.further[1] = &events;
  look.further = 1;
  EXPECT_EQ(read(sizeof events - sizeof(void *), &whole), PxGood);
  EXPECT_EQ(read(sizeof events, &whole), PxErrorArgument);
  EXPECT_EQ(write(sizeof look), PxErrorArgument);
  // What stands behind an older one's isn't looked at.
  EXPECT_EQ(write(sizeof look.known), PxGood);

  EXPECT_STREQ(PxVersion(), PX_VERSION);
  EXPECT_EQ(PX_VERSION_NUMBER >> 16, std::atoi(PX_VERSION));
}

TEST(CardsLibrary, OpensObjects) {
  Reader reader;
  Events events;
  std::vector<std::string> inEvent;
  events.onObject = [&](const PxObjectInfo &info) {
    uint64_t handle;
    int32_t last;
    ASSERT_EQ(PxOpenObject(reader.p, info.number, &handle), PxGood);
    inEvent.push_back(reader.object(handle, &last));
    EXPECT_EQ(last, PxEnd);
    EXPECT_EQ(info.size, inEvent.back().size());
    PxText text;
    EXPECT_EQ(PxReadJson(reader.p, &text), PxErrorBusy);
    EXPECT_NE(reader.error(), "");
    EXPECT_EQ(PxFreeReader(&reader.p), PxErrorBusy);
  };
  Io io(kTwo);
  ASSERT_EQ(PxOpenIo(reader.p, &io), PxGood);
  ASSERT_EQ(PxReadEvents(reader.p, &events, &events), PxGood);
  EXPECT_EQ(inEvent, (std::vector<std::string>{"Hello, card", "GIF89a"}));

  uint32_t count = 0;
  EXPECT_EQ(PxObjectCount(reader.p, &count), PxGood);
  EXPECT_EQ(count, 2u);
  uint64_t first, second, again;
  int32_t last;
  ASSERT_EQ(PxOpenObject(reader.p, 1, &first), PxGood);
  ASSERT_EQ(PxOpenObject(reader.p, 2, &second), PxGood);
  ASSERT_EQ(PxOpenObject(reader.p, 1, &again), PxGood);
  char head[6];
  uint64_t got;
  ASSERT_EQ(PxReadObject(reader.p, first, head, 6, &got), PxGood);
  EXPECT_EQ(reader.object(second, &last), "GIF89a");
  EXPECT_EQ(reader.object(first, &last, 1), " card");
  EXPECT_EQ(reader.object(again, &last, 64), "Hello, card");

  // What is over: closed, of a section that was left, of a number that never was.
  EXPECT_EQ(PxCloseObject(reader.p, first), PxGood);
  EXPECT_EQ(PxCloseObject(reader.p, first), PxErrorObject);
  EXPECT_EQ(PxReadObject(reader.p, first, head, 6, &got), PxErrorObject);
  EXPECT_EQ(PxOpenObject(reader.p, 3, &first), PxErrorObject);
  EXPECT_EQ(PxOpenObject(reader.p, 0, &first), PxErrorObject);
  EXPECT_NE(reader.error(), "");
  PxText text;
  ASSERT_EQ(PxReadJson(reader.p, &text), PxGood);
  EXPECT_EQ(PxReadObject(reader.p, second, head, 6, &got), PxErrorObject);
  EXPECT_EQ(PxCloseObject(reader.p, second), PxErrorObject);
  EXPECT_EQ(PxOpenObject(reader.p, 1, &first), PxErrorObject);

  PxSetRaw(reader.p, 1);
  reader.open("BEGIN:VCARD\nFN:A\nKEY;BASE64:QUJD*QUJD\nEND:VCARD\n");
  ASSERT_EQ(PxReadJson(reader.p, &text), PxGood);
  ASSERT_EQ(PxOpenObject(reader.p, 1, &first), PxGood);
  EXPECT_EQ(reader.object(first, &last), "ABC");
  EXPECT_EQ(last, PxErrorDamaged);

  // While the caller's object reads, what is read stays open.
  Io slot("BEGIN:VCARD\nFN:A\nKEY;BASE64:QUJD\nEND:VCARD\n");
  ASSERT_EQ(PxOpenIo(reader.p, &slot), PxGood);
  ASSERT_EQ(PxReadJson(reader.p, &text), PxGood);
  ASSERT_EQ(PxOpenObject(reader.p, 1, &first), PxGood);
  slot.inside = [&] {
    EXPECT_EQ(PxCloseObject(reader.p, first), PxErrorBusy);
    EXPECT_EQ(PxClose(reader.p), PxErrorBusy);
    EXPECT_NE(reader.error(), "");
  };
  EXPECT_EQ(reader.object(first, &last), "ABC");
}

TEST(CardsLibrary, MistakesAreAnswered) {
  Reader fresh, open, ended, documents;
  PxText text;
  PxEvents events{}, unknown{};
  events.size = sizeof events;
  PxLook look{1, 80, 0};
  uint32_t number;
  uint64_t handle;
  int16_t format;
  VcardIo *view, slots{};
  int32_t last;
  const auto sink = [](void *, const char *, uint64_t) { return 0; };
  open.open(kTwo);
  ended.open(kTwo);
  ended.json(&last);
  documents.open(kTwo);
  ASSERT_EQ(PxNextDocument(documents.p, &format, &view), PxGood);
  ASSERT_EQ(PxReadEvents(open.p, &events, nullptr), PxGood);
  const std::string gone = samplePath("there/is/none.vcf");
  const auto answers = [](const PxReader *reader, int32_t result, int32_t expected) {
    EXPECT_EQ(result, expected) << PxErrorText(reader);
    EXPECT_STRNE(PxErrorText(reader), "") << PxResultText(expected);
  };
  answers(nullptr, PxOpenFile(nullptr, "a"), PxErrorArgument);
  answers(nullptr, PxReadJson(nullptr, &text), PxErrorArgument);
  answers(nullptr, PxObjectCount(nullptr, &number), PxErrorArgument);
  answers(nullptr, PxFreeReader(nullptr), PxErrorArgument);
  answers(fresh.p, PxOpenFile(fresh.p, nullptr), PxErrorArgument);
  answers(fresh.p, PxOpenFile(fresh.p, gone.c_str()), PxErrorFile);
  answers(fresh.p, PxOpenMemory(fresh.p, nullptr, 1), PxErrorArgument);
  answers(fresh.p, PxOpenMemory(fresh.p, "", UINT64_MAX), PxErrorRead);
  answers(fresh.p, PxOpenIo(fresh.p, nullptr), PxErrorArgument);
  answers(fresh.p, PxOpenIo(fresh.p, &slots), PxErrorArgument);
  answers(fresh.p, PxReadJson(fresh.p, &text), PxErrorOrder);
  answers(fresh.p, PxSetName(fresh.p, "a"), PxErrorOrder);
  answers(fresh.p, PxNextDocument(fresh.p, &format, &view), PxErrorOrder);
  answers(fresh.p, PxOpenObject(fresh.p, 1, &handle), PxErrorObject);
  answers(open.p, PxReadJson(open.p, nullptr), PxErrorArgument);
  answers(open.p, PxWriteJson(open.p, nullptr, nullptr), PxErrorArgument);
  answers(open.p, PxReadEvents(open.p, nullptr, nullptr), PxErrorArgument);
  answers(open.p, PxReadEvents(open.p, &unknown, nullptr), PxErrorArgument);
  answers(open.p, PxWriteText(open.p, &look, sink, nullptr), PxErrorArgument);
  answers(open.p, PxOpenObject(open.p, 1, nullptr), PxErrorArgument);
  answers(open.p, PxReadObject(open.p, 1, nullptr, 1, &handle), PxErrorArgument);
  handle = 7;
  answers(open.p, PxReadObject(open.p, 9, nullptr, 0, &handle), PxErrorObject);
  EXPECT_EQ(handle, 7u) << "stored with an error";
  answers(open.p, PxNextDocument(open.p, &format, nullptr), PxErrorArgument);
  answers(open.p, PxNextDocument(open.p, &format, &view), PxErrorOrder);
  answers(documents.p, PxReadJson(documents.p, &text), PxErrorOrder);
  // The input that is open goes on all the same, and behind its end nothing more comes.
  EXPECT_EQ(PxReadJson(open.p, &text), PxGood);
  EXPECT_EQ(PxReadJson(ended.p, &text), PxEnd);
  EXPECT_EQ(PxWriteText(ended.p, nullptr, sink, nullptr), PxEnd);
  EXPECT_EQ(PxNextDocument(documents.p, &format, &view), PxEnd);
  PxReader *none = nullptr;
  EXPECT_EQ(PxFreeReader(&none), PxGood);
}

// An error ends the input for good; the reader takes the next one.
TEST(CardsLibrary, ErrorsStay) {
  Reader reader;
  PxText text;
  reader.open("no card");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(PxWriteTrace(reader.p, Written::sink, nullptr), PxErrorNotCards);
    EXPECT_EQ(PxReadJson(reader.p, &text), PxErrorNotCards);
    EXPECT_EQ(reader.error(), "not a vCard or vCalendar file");
  }
  EXPECT_EQ(PxErrorNumber(reader.p), 0);
  EXPECT_EQ(PxOpenFile(reader.p, "/"), PxGood);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(PxReadJson(reader.p, &text), PxErrorRead);
    EXPECT_EQ(PxErrorNumber(reader.p), EISDIR);
  }

  int failing = 0, begun = 0;
  int32_t last = PxGood;
  while (last != PxEnd) {
    Io io(kTwo);
    io.failFrom = ++failing;
    ASSERT_EQ(PxOpenIo(reader.p, &io), PxGood);
    reader.json(&last);
    if (last == PxEnd) break;
    EXPECT_EQ(last, PxErrorRead) << failing;
    EXPECT_EQ(PxReadJson(reader.p, &text), PxErrorRead);

    // In pieces it has a text that was begun, and closes it; behind the error nothing comes.
    for (const bool behind : {false, true}) {
      Written pieces;
      Io again("BEGIN:VCARD\nFN:A\nKEY;BASE64:QUJDQUJD\nEND:VCARD\n");
      again.failFrom = failing;
      PxSetRaw(reader.p, 1);
      ASSERT_EQ(PxOpenIo(reader.p, &again), PxGood);
      PxSetRaw(reader.p, 0);
      while (behind && PxReadJson(reader.p, &text) == PxGood) {
      }
      while (PxWriteJson(reader.p, Written::sink, &pieces) == PxGood) pieces.text.clear();
      EXPECT_TRUE(pieces.text.empty() || (!behind && pieces.text.ends_with("]}"))) << pieces.text;
      begun += !pieces.text.empty();
    }
  }
  EXPECT_GT(failing, 20);
  EXPECT_GT(begun, 0);

  const std::string path = ::testing::TempDir() + "px_cards_cut.vcf";
  std::ofstream(path) << kTwo << std::string(1 << 20, '\n');
  PxOpenFile(reader.p, path.c_str());
  std::filesystem::resize_file(path, 100);
  EXPECT_EQ(PxReadJson(reader.p, &text), PxErrorRead);
  EXPECT_EQ(reader.error(), "cut short while it was read");
  EXPECT_EQ(PxErrorNumber(reader.p), 0);

  // A file that is written over in its place gives no card of both; neither do its objects.
  std::string large = "BEGIN:VCARD\nVERSION:2.1\nFN:Ann\nPHOTO;BASE64:";
  for (int i = 0; i < 1 << 18; ++i) large += "QUJD";
  uint64_t object, count;
  std::vector<char> content(1 << 20);
  for (const bool within : {false, true}) {
    std::ofstream(path) << large << "\n\nEND:VCARD\n";
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(path, now - std::chrono::hours(1));
    PxSetRaw(reader.p, within);  // else the object is one of the view, which holds it
    PxOpenFile(reader.p, path.c_str());
    if (within) {
      EXPECT_EQ(PxReadJson(reader.p, &text), PxGood);
      EXPECT_EQ(PxOpenObject(reader.p, 1, &object), PxGood);
    }
    std::fstream(path) << "BEGIN:VCARD\nVERSION:2.1\nFN:Bob";
    EXPECT_EQ(within ? PxReadObject(reader.p, object, content.data(), content.size(), &count)
                     : PxReadJson(reader.p, &text),
              PxErrorRead);
    EXPECT_EQ(reader.error(), "changed while it was read");
  }
  PxSetRaw(reader.p, 0);
  std::filesystem::remove(path);
  ::setenv("LANGUAGE", "de", 1);
  std::setlocale(LC_ALL, "C.UTF-8");  // with it the system speaks German, where it can
  EXPECT_EQ(PxOpenFile(reader.p, path.c_str()), PxErrorFile);
  EXPECT_EQ(PxErrorNumber(reader.p), ENOENT);
  EXPECT_EQ(reader.error(), "No such file or directory");
  std::setlocale(LC_ALL, "C");

  ::setenv("TMPDIR", path.c_str(), 1);
  reader.open(kCalendar + std::string(1 << 20, ' ') +
              "\nBEGIN:VCARD\nFN;ENCODING=8BIT:" + std::string(1 << 20, 'a') + "\nEND:VCARD\n");
  EXPECT_EQ((reader.json(&last), last), PxErrorTemporary) << reader.error();
  ::unsetenv("TMPDIR");

  // Also when the text of a calendar, which waits for its overview, can't be read back at its end.
  const auto lose = [](void *, const char *, uint64_t) {
    for (const auto &open : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code none;
      if (read_symlink(open.path(), none).string().ends_with("(deleted)"))
        std::filesystem::resize_file(open.path(), 0, none);
    }
    return 0;
  };
  reader.open("BEGIN:VCALENDAR\nBEGIN:VEVENT\nSUMMARY:a\nDESCRIPTION:" + std::string(1 << 20, 'a') +
              "\nEND:VEVENT\nEND:VCALENDAR\n");
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(PxWriteText(reader.p, nullptr, lose, nullptr), PxErrorTemporary) << reader.error();
}

// What is small and costs much ends, behind whole sections, and only where that isn't allowed.
TEST(CardsLibrary, WorkIsLimited) {
  Reader reader;
  std::string costly;
  for (int i = 0; i < 4000; ++i) costly += "BEGIN:VCARD\nN:a;\nEND:VCARD\n";
  int32_t last;
  PxSetRaw(reader.p, 1);
  for (const bool limited : {true, false}) {
    PxSetLimit(reader.p, limited);
    reader.open(limited ? costly : costly.substr(0, costly.size() / 10));
    const std::string lines = reader.json(&last);
    EXPECT_EQ(last, limited ? PxErrorLimit : PxEnd);
    EXPECT_EQ(reader.json(&last), "");
    EXPECT_EQ(last, limited ? PxErrorLimit : PxEnd) << "again";
    EXPECT_EQ(reader.error().substr(0, 47),
              limited ? "more work than its size allows; stopped at byte" : "");
    EXPECT_GT(std::count(lines.begin(), lines.end(), '\n'), 50);
    EXPECT_TRUE(lines.ends_with("}\n"));
  }
  // The card's object costs as much as is read of it.
  PxSetLimit(reader.p, 1);
  int opened = 0;
  reader.open("BEGIN:VCARD\nPHOTO;BASE64:\n" + std::string(1 << 20, 'A') + "\n\nEND:VCARD\n");
  PxText text;
  ASSERT_EQ(PxReadJson(reader.p, &text), PxGood);
  for (last = PxEnd; last == PxEnd && opened < 100; ++opened) {
    uint64_t handle;
    ASSERT_EQ(PxOpenObject(reader.p, 1, &handle), PxGood);
    reader.object(handle, &last, 64);
  }
  EXPECT_EQ(last, PxErrorLimit);
  EXPECT_GT(opened, 20);
  EXPECT_LT(opened, 60);
  EXPECT_EQ(PxReadJson(reader.p, &text), PxErrorLimit);
}

TEST(CardsLibrary, NoMemoryIsAnError) {
  const std::string all =
      kTwo + kCalendar + "BEGIN:VCARD\r\nFN;CHARSET=koi8-r:\xC1\r\nEND:VCARD\r\n";
  PxEvents none{};
  none.size = sizeof none;
  bool failed = true;
  long count = 0;
  while (failed) {
    Reader reader;
    PxText text;
    char piece[8];
    uint64_t handle, got;
    failingAllocation = ++count;
    int32_t results[] = {reader.p ? PxOpenMemory(reader.p, all.data(), all.size()) : PxErrorMemory,
                         PxReadJson(reader.p, &text), PxOpenObject(reader.p, 1, &handle), 0, 0};
    results[3] = results[2] ? results[2] : PxReadObject(reader.p, handle, piece, 8, &got);
    while ((results[4] = PxReadEvents(reader.p, &none, nullptr)) == PxGood) {
    }
    failed = failingAllocation < 0;
    failingAllocation = 0;
    const int32_t *first =
        std::find_if(results, results + 5, [](int32_t r) { return r != PxGood; });
    EXPECT_EQ(*first, failed ? PxErrorMemory : PxEnd) << count << reader.error();
  }
  EXPECT_GT(count, 50);
}

TEST(CardsLibrary, OneThreadAtATime) {
  Reader reader;
  Events events;
  events.onObject = [&](const PxObjectInfo &) {
    std::thread([&] {
      PxText text;
      uint64_t handle;
      EXPECT_EQ(PxReadJson(reader.p, &text), PxErrorBusy);
      EXPECT_EQ(PxOpenObject(reader.p, 1, &handle), PxErrorBusy);
      EXPECT_EQ(PxClose(reader.p), PxErrorBusy);
      EXPECT_EQ(reader.error(), PxResultText(PxErrorBusy));
    }).join();
  };
  reader.open(kTwo);
  ASSERT_EQ(PxReadEvents(reader.p, &events, &events), PxGood);

  const auto hammer = [&] {
    for (int i = 0; i < 300; ++i) {
      PxText text;
      uint64_t handle = 0;
      const int32_t results[] = {PxOpenMemory(reader.p, kTwo.data(), kTwo.size()),
                                 PxReadJson(reader.p, &text), PxOpenObject(reader.p, 1, &handle),
                                 PxCloseObject(reader.p, handle)};
      for (const int32_t result : results) {
        EXPECT_TRUE(result == PxGood || result == PxEnd || result == PxErrorBusy ||
                    result == PxErrorObject)
            << result;
      }
    }
  };
  std::thread other(hammer);
  hammer();
  other.join();
}

// What the filter makes of an input: the characters, with "|" for each break, and the first bytes
// of the object that comes last.
struct FilterRun {
  std::u16string text;
  uint32_t last = 0;
  uint64_t start = 0, length = 0;
  std::string object;

  FilterRun(VcardIo *io, int16_t format) {
    VcardStream *stream;
    VcardData *data = VwAllocProc();
    VwLocalUp(io, &stream, data);
    VwSetUser(reinterpret_cast<uint64_t>(this), 0, data);
    const SoEmitCharRoutine emitChar = [](uint16_t code, uint64_t self, uint64_t) -> int64_t {
      reinterpret_cast<FilterRun *>(self)->text += code;
      return 0;
    };
    const SoEmitBreakRoutine emitBreak = [](uint32_t kind, uint32_t, uint64_t self,
                                            uint64_t) -> int64_t {
      reinterpret_cast<FilterRun *>(self)->text += u'|';
      reinterpret_cast<FilterRun *>(self)->last = kind;
      return 0;
    };
    const SoSetObjectDataRoutine setObjectData = [](uint32_t selector, uint64_t a, uint64_t b,
                                                    uint64_t self, uint64_t) -> int64_t {
      if (selector != SoObjectDataRange) return 0;
      reinterpret_cast<FilterRun *>(self)->start = a;
      reinterpret_cast<FilterRun *>(self)->length = b;
      return 0;
    };
    VwSetSoRtn(SoIdEmitChar, reinterpret_cast<SoRoutine>(emitChar), data);
    VwSetSoRtn(SoIdEmitBreak, reinterpret_cast<SoRoutine>(emitBreak), data);
    VwSetSoRtn(SoIdSetObjectData, reinterpret_cast<SoRoutine>(setObjectData), data);
    EXPECT_EQ(VwStreamOpen(stream, format, 0, nullptr, data), VcardOpenGood);
    do {
      VwStreamTell(0, data);
      VwStreamSection(0, data);
      VwStreamRead(0, data);
    } while (last == SoBreakSection);
    VcardIo *content;
    if (length > 0 && VwDoSpecial(stream, start, &content, length, 0, 2) == 0) {
      char bytes[16];
      uint32_t count = 0;
      EXPECT_EQ(content->Read(content, bytes, sizeof bytes, &count), 0);
      object.assign(bytes, count);
      content->Close(content);
    }
    VwLocalDown(stream, &io);
    VwFreeProc(data);
  }
};

TEST(CardsLibrary, GivesTheViewByDocuments) {
  Reader reader;
  Io io("\xEF\xBB\xBF" + kTwo + kCalendar);  // the filter alone reads no byte of it
  ASSERT_EQ(PxOpenIo(reader.p, &io), PxGood);
  int16_t format;
  VcardIo *view;
  std::string formats, objects;
  std::u16string text;
  while (PxNextDocument(reader.p, &format, &view) == PxGood) {
    const FilterRun run(view, format);
    formats += std::to_string(format) + " ";
    objects += run.object + " ";
    text += run.text;
  }
  EXPECT_EQ(formats, "1141 1196 ");
  EXPECT_EQ(objects, "GIF89a  ");
  EXPECT_EQ(text.substr(0, 4), u"Ann|");
  EXPECT_NE(text.find(u"Bob Bo"), std::u16string::npos);
  EXPECT_NE(text.find(u"Meeting|"), std::u16string::npos);
  EXPECT_EQ(PxNextDocument(reader.p, &format, &view), PxEnd);
}

TEST(CardsLibrary, WritesForPeople) {
  Reader reader, other;
  const auto written = [](Reader *by, auto write, int32_t expected = PxGood, int most = INT32_MAX) {
    Written to;
    to.most = most;
    by->open(kTwo);
    EXPECT_EQ(write(by->p, Written::sink, &to), expected) << by->error();
    EXPECT_TRUE(expected == PxGood || to.calls == most) << to.calls;
    return to.text;
  };
  const auto text = [](PxReader *by, PxSink sink, Written *to) {
    return PxWriteText(by, nullptr, sink, to);
  };
  const auto page = [](PxReader *by, PxSink sink, Written *to) {
    EXPECT_GE(PxBeginPage(by, "A & B", 1, sink, to), PxGood);
    EXPECT_EQ(PxBeginPage(by, "C", 1, sink, to), PxErrorOrder);
    PxSetName(by, "first.vcf");
    PxWriteHtml(by);
    PxOpenMemory(by, "BEGIN:VCARD\nFN:<Bob>\nEND:VCARD\n", 31);
    PxWriteHtml(by);
    PxTellOnPage(by, "no\xFF.vcf", "<gone>");
    PxClose(by);
    const int32_t result = PxEndPage(by);
    EXPECT_EQ(PxEndPage(by), PxErrorOrder);
    return result;
  };

  const std::string whole = written(&reader, text);
  EXPECT_EQ(whole.substr(0, 8), "Ann\n===\n");
  EXPECT_NE(whole.find("\nBob Bo\n======\n"), std::string::npos) << whole;

  // The head is the same for every page; a page more has its own.
  for (int i = 0; i < 2; ++i) {
    std::string html = written(&reader, page);
    EXPECT_EQ(html.substr(0, 32), "<!DOCTYPE html>\n<html lang=\"en\" ");
    for (const char *part : {"A &amp; B", "first.vcf", "Bob Bo", "&lt;Bob&gt;", "no\uFFFD.vcf",
                             "&lt;gone&gt;", "</html>\n"}) {
      const size_t at = html.find(part);
      ASSERT_NE(at, std::string::npos) << part << " in " << html;
      html.erase(0, at);
    }
    EXPECT_EQ(html, "</html>\n");
  }

  // A sink that wants no more is called no more.
  written(&reader, text, PxStopped, 1);
  written(&reader, page, PxStopped, 1);
  written(&reader, page, PxStopped, 2);
  const std::string trace = written(&reader, PxWriteTrace);
  EXPECT_EQ(trace.substr(0, 14), "SoBeginSection") << trace;
  EXPECT_EQ(written(&reader, PxWriteTrace, PxStopped, 1), trace.substr(0, trace.find('\n') + 1));
  EXPECT_EQ(PxWriteTrace(reader.p, Written::sink, nullptr), PxErrorOrder);
  PxText json;
  int16_t format;
  VcardIo *view;
  EXPECT_EQ(PxReadJson(reader.p, &json), PxErrorOrder);
  EXPECT_EQ(PxNextDocument(reader.p, &format, &view), PxErrorOrder);

  // Each reader has its language.
  EXPECT_EQ(PxSetLanguage(reader.p, "tlh"), PxErrorArgument);
  EXPECT_EQ(reader.error(), "no texts in that language");
  ASSERT_EQ(PxSetLanguage(reader.p, "de-AT"), PxGood);
  EXPECT_NE(written(&reader, text).find("\nFoto "), std::string::npos);
  EXPECT_NE(written(&reader, page).find("<html lang=\"de\""), std::string::npos);
  EXPECT_EQ(written(&other, text), whole);
  ASSERT_EQ(PxSetLanguage(reader.p, nullptr), PxGood);
  EXPECT_EQ(written(&reader, text), whole);

  Written error;
  EXPECT_EQ(PxWriteJsonError("a\xFF", "\"gone\"", Written::sink, &error), PxGood);
  EXPECT_EQ(error.text, "{\"file\":\"a\uFFFD\",\"error\":\"\\\"gone\\\"\"}");
  error.text.clear();
  EXPECT_EQ(PxWriteJsonError("", "gone", Written::sink, &error), PxGood);
  EXPECT_EQ(error.text, "{\"error\":\"gone\"}");
}

TEST(CardsLibrary, StringIdsMeanTheirTexts) {
  std::ifstream header(PX_STRING_IDS);
  int rows = 0;
  for (std::string line; std::getline(header, line);) {
    unsigned id;
    char text[64];
    const char *row = " VcardString%*[A-Za-z0-9] = %u%*[, ]/* \"%63[^\"]";
    if (std::sscanf(line.c_str(), row, &id, text) != 2) continue;
    ++rows;
    EXPECT_STREQ(PxLabelText(id, "en"), text) << line;
  }
  EXPECT_GT(rows, 90);
}

TEST(CardsLibrary, TellsFaultsAndLabels) {
  Reader reader;
  std::string faults;
  const auto fault = [](void *user, uint64_t line, const char *) {
    *static_cast<std::string *>(user) += std::to_string(line) + " ";
  };
  PxSetFault(reader.p, fault, &faults);
  int32_t last;
  reader.open("BEGIN:VCARD\nFN:A\nno colon\nEND:VCARD\n");
  EXPECT_NE(reader.json(&last), "");
  EXPECT_EQ(faults, "3 ");

  EXPECT_STREQ(PxLabelText(79406, "en"), "Telephone");
  EXPECT_STREQ(PxLabelText(79406, "tlh"), "Telephone");
  EXPECT_STREQ(PxLabelText(79406, "de_AT.UTF-8"), "Telefon");
  EXPECT_STREQ(PxLabelText(1, nullptr), "");
  EXPECT_STREQ(PxPropertyLabel(0, "NICKNAME", nullptr), "Nickname");
  EXPECT_STREQ(PxPropertyLabel(0, "NICKNAME", "de"), "Spitzname");
  EXPECT_STREQ(PxPropertyLabel(0, nullptr, nullptr), "");
  EXPECT_STREQ(PxTypeLabel("voice", "de"), "Sprache");
  EXPECT_STREQ(PxTypeLabel("calendar", "de"), "calendar") << "another text of ours is none";
  EXPECT_STREQ(PxTypeLabel(nullptr, nullptr), "");
  EXPECT_STREQ(PxParameterLabel("ROLE", "de"), "Funktion");
  EXPECT_STREQ(PxParameterLabel("X", "de"), "");

  // Each result has a text of its own, and what is none another.
  std::set<std::string> texts;
  for (int32_t result = PxErrorLimit - 1; result <= PxStopped; ++result)
    texts.insert(PxResultText(result));
  EXPECT_EQ(texts.size(), 17u);
  EXPECT_STREQ(PxResultText(PxErrorLimit - 1), PxResultText(PxStopped + 1));
}

}  // namespace

// What a host meets before a card is read: the entry table, the answers about the library, the
// record with its routines, and what happens without memory.

#include <dlfcn.h>

#include <sstream>

#include "px/version.h"
#include "tests/support/failing_memory.h"
#include "tests/support/runs.h"

// The test program's calloc comes before the system's. A sanitizer keeps that one under a name. The
// thread sanitizer's own threads call it before they are ready for instrumented code.
extern "C" {
void *__interceptor_calloc(size_t count, size_t size) __attribute__((weak));
void *__libc_calloc(size_t count, size_t size);

static int callsToFailure;  // 1: the next one fails; 0: none

PX_API __attribute__((no_sanitize("thread"))) void *calloc(size_t count, size_t size) noexcept {
  if (callsToFailure > 0 && --callsToFailure == 0) return nullptr;
  return (__interceptor_calloc ? __interceptor_calloc : __libc_calloc)(count, size);
}
}

namespace px::test {
namespace {

constexpr std::string_view kCard =
    "BEGIN:VCARD\nFN:Ann\nA:1\nB:2\nC:3\nD:4\nE:5\nF:6\nG:7\nH:8\nEND:VCARD\n";

void *exported(const std::string &name) {
  Dl_info library{};
  dladdr(reinterpret_cast<void *>(filter().streamOpen), &library);
  return dlsym(dlopen(library.dli_fname, RTLD_NOW | RTLD_NOLOAD), name.c_str());
}

TEST(Frame, EntryTable) {
  const std::string routines =
      "VwStreamOpen VwStreamSection VwStreamRead VwStreamTell VwStreamSeek VwGetInfo VwGetData "
      "VwSetData VwLocalUp VwLocalDown VwAllocProc VwFreeProc VwSetUser VwSetSoRtn VwStreamClose "
      "none none VwStreamReadRecord VwDoSpecial";
  // What is in each slot, its routine, null, or what the host had there, by the host's count.
  const std::pair<std::string, std::vector<uint16_t>> cases[] = {
      {"..................................00", {0}},
      {"RRRRRRRRRRRRRRR00R................00", {1, 18}},
      {"RRRRRRRRRRRRRRR00RR...............00", {19, 22}},
      {"RRRRRRRRRRRRRRR00RR0000...........00", {23, 29}},
      {"RRRRRRRRRRRRRRR00RR00000000000000000", {30, 65535}}};
  for (const auto &[expected, counts] : cases) {
    for (const uint16_t count : counts) {
      void *table[VwSlotCount];
      std::fill(std::begin(table), std::end(table), &table);
      reinterpret_cast<decltype(VwGetRtns) *>(exported("VwGetRtns"))(table, count);
      std::istringstream names(routines);
      std::string slots, name;
      for (const void *entry : table) {
        name = names >> name ? name : "none";
        const char routine = entry == exported(name) ? 'R' : '?';
        slots += entry == nullptr ? '0' : entry == &table ? '.' : routine;
      }
      EXPECT_EQ(slots, expected) << count;
    }
  }
}

TEST(Frame, Info) {
  constexpr uint64_t untouched = 0xEEEEEEEEEEEEEEEE;
  const std::pair<uint16_t, uint64_t> numbers[] = {
      {0, untouched},           {1, 0xEEEEEEEEEEEE12C4},  {2, 0xEEEEEEEEEEEE27F8},
      {3, 0xEEEEEEEEEEEE1290},  {4, 0xEEEEEEEEEEEE0190},  {5, 0xEEEEEEEEEEEE01B8},
      {6, 0xEEEEEEEEEEEE0002},  {7, 0xEEEEEEEE04AC0475},  {10, 0xEEEEEEEEEEEE0000},
      {11, 0xEEEEEEEEEEEE0000}, {12, 0xEEEEEEEE12345678}, {13, 0xEEEEEEEE00000000},
      {14, untouched},          {65535, untouched}};
  for (const auto &[selector, expected] : numbers) {
    uint64_t out = untouched;
    EXPECT_EQ(filter().getInfo(&out, selector), expected == untouched ? 0 : 1) << selector;
    EXPECT_EQ(out, expected) << selector;
  }
  const std::pair<uint16_t, const char *> texts[] = {{8, "%b %d %Y"}, {9, "%H:%M:%S"}};
  for (const auto &[selector, form] : texts) {
    std::string out(20, '#');
    EXPECT_EQ(filter().getInfo(out.data(), selector), 1);
    const std::string text = out.c_str();
    tm time{};
    const char *end = strptime(text.c_str(), form, &time);
    EXPECT_TRUE(end && !*end) << out;
    EXPECT_EQ(text.size(), selector == 8 ? 11U : 8U) << out;
    EXPECT_EQ(out.substr(text.size()), '\0' + std::string(19 - text.size(), '#'));
  }
}

TEST(Frame, ExportedData) {
  const std::string version = *static_cast<const char *const *>(exported("version"));
  EXPECT_EQ(version, "ZEV_VER=" PX_VERSION);
  const auto bytesAt = [](const char *name, size_t offset, size_t size) {
    return std::string(static_cast<const char *>(exported(name)) + offset, size);
  };
  std::string overlays(72, '\0');
  overlays.replace(0, 8, "\x75\x04xvCard").replace(36, 12, "\xAC\x04xvCalendar");
  EXPECT_EQ(bytesAt("VcardOverlayId", 0, 72), overlays);
  // The first and the last name of each table; before them the states end in two rows of zeros.
  const std::pair<size_t, std::string> rows[] = {
      {288, "begin"},   {2016, "attach"}, {2048, "type"}, {2336, "expect"},
      {2368, "dom"},    {64, ""},         {3968, "x-"},   {4124, "inline"},
      {4284, "binary"}, {4316, "7bit"},   {4476, "utf-8"}};
  for (auto [offset, row] : rows) {
    row.resize(32);
    EXPECT_EQ(bytesAt("VcardInit", offset, 32), row);
  }
}

TEST(Frame, RoutinesThatDoNothing) {
  for (const char *name : {"SODummy", "VwStreamClose", "VwStreamReadRecord", "TavoVcardError",
                           "VwGetSectionDataFunc", "VwSetSectionDataFunc"}) {
    const auto routine = reinterpret_cast<int64_t (*)(int64_t, void *)>(exported(name));
    EXPECT_EQ(routine(-0x123456789ABCDEF0, nullptr), -0x123456789ABCDEF0) << name;
  }
}

void strayCall() { ADD_FAILURE() << "no call is made to this id"; }

TEST(Frame, OtherIdsAreNoMatter) {
  const std::string used = " 1 2 3 4 5 18 45 49 50 88 89 90 96 97 138 141 147 148 ";
  MemoryIo io(kCard);
  Recorder recorder;
  CardRun run(filter(), &io, &recorder);
  EXPECT_EQ(run.open(VcardFormatVcard), VcardOpenGood);
  for (int16_t id = -200; id < 400; ++id) {
    if (used.find(' ' + std::to_string(id) + ' ') != used.npos) continue;
    filter().setSoRtn(id, strayCall, run.data());
  }
  run.readAll();
  EXPECT_EQ(recorder.trace, runOnce(kCard, VcardFormatVcard).trace);
}

int calls;

int64_t countCall(uint32_t, uint64_t user0, uint64_t user1) {
  EXPECT_EQ(user0, 0xFEDCBA9876543210);
  EXPECT_EQ(user1, 0x0123456789ABCDEF);
  ++calls;
  return 0;
}

// SoUseStyle is called four times in the summary and three times for a property. SoEmitBreak isn't
// set, so each read ends at the first paragraph.
TEST(Frame, RecordStreamAndRoutines) {
  const FailingMemory memory(1);
  EXPECT_EQ(filter().allocProc(), nullptr);
  VcardData *data = filter().allocProc();
  ASSERT_EQ(memory.handles(), 1);
  MemoryIo io(kCard);
  VcardStream *stream = nullptr;
  filter().localUp(&io, &stream, data);
  filter().setUser(0xFEDCBA9876543210, 0x0123456789ABCDEF, data);
  const auto setRoutine = [data](SoEmitSpecialRoutine routine) {
    filter().setSoRtn(SoIdUseStyle, reinterpret_cast<SoRoutine>(routine), data);
  };
  const auto callsOfRead = [data] {
    calls = 0;
    filter().streamRead(0, data);
    return calls;
  };
  setRoutine(countCall);
  filter().streamOpen(stream, VcardFormatVcard, 0, nullptr, data);
  filter().streamSection(0, data);
  EXPECT_EQ(callsOfRead(), 4);
  setRoutine(nullptr);
  EXPECT_EQ(callsOfRead(), 0);
  // Making a stream takes all routines away, also where it can't be made.
  for (const int failAt : {1, 2, 0}) {
    setRoutine(countCall);
    EXPECT_EQ(callsOfRead(), 3);
    VcardStream *second = stream;
    callsToFailure = failAt;
    filter().localUp(&io, &second, data);
    EXPECT_EQ(second == nullptr, failAt != 0);
    EXPECT_EQ(callsOfRead(), 0);
    VcardIo *from = failAt == 0 ? nullptr : &io;
    if (second != nullptr) filter().localDown(second, &from);
    EXPECT_EQ(from, &io);
  }
  std::string state(VcardSavedSize + 4, '#');
  filter().getData(state.data(), data);
  EXPECT_EQ(state.substr(VcardSavedSize - 1), std::string("\0####", 5));
  VcardIo *from;
  filter().localDown(stream, &from);
  filter().freeProc(data);
  EXPECT_EQ(memory.handles(), 0);
}

TEST(Frame, BufferSizes) {
  const std::string bytes = "BEGIN:VCARD\n" + std::string(10000, 'X');
  const auto firstRead = [&bytes] {
    std::vector<std::string> log;
    const Result result = runOnce(bytes, VcardFormatVcard, {.log = &log});
    return log.size() < 3 ? std::to_string(result.opened) : log[2];
  };
  EXPECT_EQ(firstRead(), "read 0 2048");
  const std::pair<uint32_t, std::string> cases[] = {
      {0, "read 0 0"}, {1, "read 0 1024"}, {4, "read 0 4096"}, {0x200000, "-2"}};
  for (const auto &[kilobytes, expected] : cases) {
    const BufferSize size(kilobytes);
    EXPECT_EQ(firstRead(), expected);
  }
}

}  // namespace
}  // namespace px::test

// The object that VwDoSpecial makes, over objects of a host that writes down each call.

#include <algorithm>
#include <cstring>
#include <sstream>

#include "tests/support/failing_memory.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

constexpr int32_t kAnswer = -77;  // of all slots; Open alone answers 0

struct FakeIo : VcardIo {
  FakeIo();
};

// The input's object and what Open makes: one object of each kind.
struct Host {
  FakeIo input{}, range{}, decode{};
  VcardIo *out = &input;  // for VwDoSpecial; not null, to see whether it is written
  uint32_t failingOpen = 0, opens = 0, failingAllocation = 0, allocations = 0;
  int32_t handles = 0;
  std::string log;

  // The object outlives the stream and the record.
  int32_t openObject(uint64_t start, uint64_t length, uint32_t kind) {
    Output output;
    CardRun run(filter(), &input, &output);
    const FailingMemory memory(failingAllocation);
    decode.Open = [](auto...) { return kAnswer; };  // to be told from the input's
    const int32_t answer = filter().doSpecial(run.stream(), start, &out, length, 0xABCD, kind);
    allocations = memory.allocations();
    handles = memory.handles();
    return answer;
  }
  // Answers how many handles are freed.
  int32_t closeObject() {
    const FailingMemory memory;
    EXPECT_EQ(out->Close(out), 0);
    return -memory.handles();
  }
  uint64_t slotsSet() const {  // of the object's nine
    void *slots[9];
    std::memcpy(slots, out, sizeof slots);
    return 9U - static_cast<uint64_t>(std::count(slots, slots + 9, nullptr));
  }
};
std::unique_ptr<Host> host;  // of the running case

// A number in hexadecimal, or the name of the object that it is the address of.
std::string word(uint64_t value) {
  if (value == uint64_t(&host->input)) return "input";
  if (value == uint64_t(&host->range)) return "range";
  if (value == uint64_t(&host->decode)) return "decode";
  return (std::stringstream() << std::hex << value).str();
}

template <class... Words>
int32_t note(const char *slot, Words... words) {
  host->log += (host->log.empty() ? "" : ", ") + std::string(slot);
  ((host->log += " " + word(uint64_t(words))), ...);
  return kAnswer;
}

int32_t open(VcardIo **result, uint32_t type, void *record, uint32_t flags) {
  uint64_t w[5] = {};
  std::memcpy(w, record, type == VcardIoOpenRange ? 24 : 40);
  if (type == VcardIoOpenRange) note("open 8", flags, w[0], w[1], w[2]);
  if (type == VcardIoOpenDecode) note("open 19", flags, w[0], w[1], w[2], w[3], w[4]);
  EXPECT_EQ(host->slotsSet(), 0U);  // the object is there already, and can't be used yet
  if (++host->opens == host->failingOpen) return 1;
  *result = type == VcardIoOpenRange ? &host->range : &host->decode;
  return 0;
}

FakeIo::FakeIo() : VcardIo{} {
  Close = [](auto... a) { return note("close", a..., host->slotsSet()); };
  Read = [](auto... a) { return note("read", a...); };
  Write = [](auto... a) { return note("write", a...); };
  Seek = [](auto... a) { return note("seek", a...); };
  Tell = [](auto... a) { return note("tell", a...); };
  GetInfo = [](auto... a) { return note("query", a...); };
  Open = open;
  Seek64 = [](auto... a) { return note("seek64", a...); };
  Tell64 = [](auto... a) { return note("tell64", a...); };
}

TEST(DecodingStream, OpensOrLeavesNothing) {
  const struct {
    uint64_t start, length;
    uint32_t kind, failingAllocation, failingOpen;
    std::string log;
  } cases[] = {
      {5, 10, 2, 0, 0, "open 8 9 input 5 a, open 19 9 range 200000000 0 0 0"},
      {~0ULL << 31 | 1, 0x1FFFFFFFF, 2, 0, 0,
       "open 8 9 input 80000001 ffffffff, open 19 9 range 200000000 0 0 0"},
      {1ULL << 32, 1ULL << 33, 2, 0, 0, "open 8 9 input 0 0, open 19 9 range 200000000 0 0 0"},
      {5, 10, 2, 0, 1, "open 8 9 input 5 a"},
      {5, 10, 2, 0, 2, "open 8 9 input 5 a, open 19 9 range 200000000 0 0 0, close range 0"},
      {5, 10, 2, 1, 0, ""},
      {0, 10, 2, 0, 0, ""},
      {5, 0, 2, 0, 0, ""},
      {5, 10, 1, 0, 0, ""},
      {5, 10, 3, 0, 0, ""},
      {5, 10, 0x10002, 0, 0, ""},
  };
  for (const auto &c : cases) {
    host = std::make_unique<Host>();
    host->failingOpen = c.failingOpen;
    host->failingAllocation = c.failingAllocation;
    const bool good = c.failingOpen == 0 && !c.log.empty();
    EXPECT_EQ(host->openObject(c.start, c.length, c.kind), good ? 0 : -1);
    EXPECT_EQ(host->log, c.log);
    EXPECT_EQ(host->allocations, c.log.empty() ? c.failingAllocation : 1);
    EXPECT_EQ(host->handles, good ? 1 : 0);
    EXPECT_EQ(host->out == &host->input, c.log.empty());
    EXPECT_EQ(host->out == nullptr, c.failingOpen > 0);
    EXPECT_EQ(good ? host->closeObject() : 1, 1);
  }
}

template <class T>
T *at(uintptr_t address) {
  return reinterpret_cast<T *>(address);
}

TEST(DecodingStream, AnswersAsTheDecodingObject) {
  const struct {
    int32_t (*call)(VcardIo *slots, VcardIo *object);
    const char *log;
  } cases[] = {
      {[](auto *s, auto *o) { return s->Read(o, at<void>(0xA1), ~0U, at<uint32_t>(0xA4)); },
       "read decode a1 ffffffff a4"},
      {[](auto *s, auto *o) { return s->Write(o, ~0ULL, 2, 3); },
       "write decode ffffffffffffffff 2 3"},
      {[](auto *s, auto *o) { return s->Seek(o, 0x8001, ~0ULL); },
       "seek decode 8001 ffffffffffffffff"},
      {[](auto *s, auto *o) { return s->Tell(o, at<uint32_t>(0xA4)); }, "tell decode a4"},
      {[](auto *s, auto *o) { return s->GetInfo(o, 24, at<void>(0xA1)); }, "query decode 18 a1"},
      {[](auto *s, auto *o) { return s->Seek64(o, 0xFFFE, -1); },
       "seek64 decode fffe ffffffffffffffff"},
      {[](auto *s, auto *o) { return s->Tell64(o, at<int64_t>(0xA8)); }, "tell64 decode a8"},
  };
  host = std::make_unique<Host>();
  ASSERT_EQ(host->openObject(5, 10, 2), 0);
  for (const auto &c : cases) {
    host->log.clear();
    EXPECT_EQ(c.call(host->out, host->out), kAnswer) << c.log;
    EXPECT_EQ(c.call(host->out, nullptr), -4) << c.log;
    EXPECT_EQ(host->log, c.log);
  }
  EXPECT_EQ(host->out->Close(nullptr), -4);
  auto *object = reinterpret_cast<VcardObjectIo *>(host->out);
  EXPECT_EQ(object->Slots.Open, host->decode.Open);
  EXPECT_EQ(std::count(object->Reserved, object->Reserved + 3, nullptr), 3);
  EXPECT_EQ(object->RangeStream, &host->range);
  EXPECT_EQ(object->DecodeStream, &host->decode);
  host->log.clear();
  host->closeObject();
  EXPECT_EQ(host->log, "close decode 2, close range 2");  // the 64-bit slots aren't cleared
}

// An inner object that isn't there isn't closed.
TEST(DecodingStream, ClosesWhatIsThere) {
  host = std::make_unique<Host>();
  ASSERT_EQ(host->openObject(5, 10, 2), 0);
  auto *object = reinterpret_cast<VcardObjectIo *>(host->out);
  object->DecodeStream = object->RangeStream = nullptr;
  host->log.clear();
  EXPECT_EQ(host->closeObject(), 1);
  EXPECT_EQ(host->log, "");
}

}  // namespace
}  // namespace px::test

// libpx_cards as callers use and misuse it: what is given out is whole and valid UTF-8, however the
// input is opened and in whatever order the routines are called; mistakes are answered with a
// result; what a file holds never looks like a fault of the library.

#include <rapidjson/document.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "host/source/utf8.h"
#include "px/cards.h"
#include "px/vcrd.h"

namespace px::fuzz {
namespace {

// Valid but for NUL, which a text of a card may hold.
void requireUtf8(PxText text) {
  require(text.bytes != nullptr, "a text is never null");
  const std::string_view utf8(text.bytes, static_cast<size_t>(text.size));
  bool cut;
  for (size_t at = 0; at < utf8.size(); ++at) {
    at += validUtf8Length(utf8.substr(at), &cut);
    require(at >= utf8.size() || utf8[at] == '\0', "a text is UTF-8");
  }
}

// A caller with one reader.
class Caller {
 public:
  Caller(std::string_view text, Choices *choices)
      : text_(text), choices_(*choices), io_(text, chooseReads(choices)) {
    require(reader_ != nullptr, "a reader");
  }
  ~Caller() {
    require(PxFreeReader(&reader_) == PxGood && reader_ == nullptr, "a reader is freed");
    require(PxFreeReader(&reader_) == PxGood, "and nothing is freed twice");
  }
  Caller(const Caller &) = delete;
  Caller &operator=(const Caller &) = delete;

  void open() {
    PxSetRaw(reader_, choices_.yes());
    PxSetLimit(reader_, !choices_.yes() || text_.size() > 4096);
    PxSetFault(reader_, choices_.yes() ? fault : nullptr, this);
    require((choices_.yes() ? PxOpenMemory(reader_, text_.data(), text_.size())
                            : PxOpenIo(reader_, &io_)) == PxGood,
            "memory and an object can be opened");
    handles_.clear();
    state_ = State::Open;
  }

  // Makes a call of some kind, and looks at what it answers.
  void call() {
    const uint32_t kind = choices_.below(12);
    if (kind < 10) handles_.clear();  // over, or let go
    switch (kind) {
      case 0:
        if (choices_.below(8) == 0) open();
        return;
      case 1:
        if (choices_.below(8) > 0) return;
        require(PxClose(reader_) == PxGood, "closing is never wrong");
        state_ = State::Closed;
        return;
      case 2:
      case 3:
        return readJson();
      case 4:
        return sectionRead(PxWriteJson(reader_, sink, this));
      case 5:
      case 6:
        return readEvents();
      case 7:
        return sectionRead(PxWriteText(reader_, nullptr, sink, this));
      case 8:
        return misuse();
      case 9:
        return document();
      default:
        return object();
    }
  }

  // Reads what is left.
  void finish() {
    for (size_t i = 0; i <= text_.size() + 1 && state_ == State::Open; ++i) readJson();
    require(state_ != State::Open, "no more sections than bytes");
  }

 private:
  enum class State { Closed, Open, Over };

  static void fault(void *user, uint64_t line, const char *text) {
    require(line > 0 && text && *text, "a fault has its line and its text");
    static_cast<Caller *>(user)->requireBusy();
  }

  static int32_t sink(void *user, const char *bytes, uint64_t size) {
    require(bytes && size > 0, "a piece holds something");
    return static_cast<Caller *>(user)->choices_.below(64) == 0;
  }

  // Within an event most calls are refused.
  void requireBusy() {
    PxText text;
    require(PxClose(reader_) == PxErrorBusy, "no input is closed in an event");
    require(PxReadJson(reader_, &text) == PxErrorBusy, "no section is read in an event");
    PxReader *copy = reader_;
    require(PxFreeReader(&copy) == PxErrorBusy && copy == reader_,
            "no reader is freed in an event");
  }

  // Takes the answer of a call that reads on.
  void sectionRead(int32_t result) {
    handles_.clear();
    require(*PxErrorText(reader_) == '\0' || result < 0, "what went well has no error");
    require(result >= 0 || *PxErrorText(reader_) != '\0', "an error has a text");
    require(result != PxErrorInternal && result != PxErrorArgument && result != PxErrorBusy,
            "the caller made no mistake, nor did the library");
    if (result == PxErrorOrder) return;  // nothing is open, or the input is read the other way
    require(state_ != State::Closed, "nothing is read of what isn't open");
    const bool over = result < 0 || result == PxEnd;
    require(over || state_ != State::Over, "nothing comes behind the end");
    if (over) state_ = State::Over;
  }

  void readJson() {
    PxText json;
    const int32_t result = PxReadJson(reader_, &json);
    sectionRead(result);
    if (result != PxGood) return;
    requireUtf8(json);
    require(json.bytes[json.size] == '\0', "a NUL stands behind a text");
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(
        json.bytes, static_cast<size_t>(json.size));
    require(!document.HasParseError() && document.IsObject(), "JSON that parses");
  }

  void readEvents() {
    PxEvents events{};
    events.size = sizeof events;
    events.beginSection = [](void *user, const PxSection *section) {
      requireUtf8(section->component);
      requireUtf8(section->version);
      return static_cast<Caller *>(user)->event(0, 1);
    };
    events.beginSummaryLine = [](void *user, int32_t kind, int32_t) {
      require(kind >= 0, "a kind of line");
      return static_cast<Caller *>(user)->event(1, 2);
    };
    events.endSummaryLine = [](void *user, const PxText *types, uint64_t count) {
      for (uint64_t i = 0; i < count; ++i) requireUtf8(types[i]);
      return static_cast<Caller *>(user)->event(2, 1);
    };
    events.beginProperty = [](void *user, const PxProperty *property) {
      requireUtf8(property->name);
      return static_cast<Caller *>(user)->event(1, 2);
    };
    events.text = [](void *user, const char *bytes, uint64_t size) {
      requireUtf8({bytes, size});
      return static_cast<Caller *>(user)->event(2, 2);
    };
    events.object = [](void *user, const PxObjectInfo *object) {
      requireUtf8(object->title);
      auto *caller = static_cast<Caller *>(user);
      caller->object();
      return caller->event(2, 2);
    };
    events.endProperty = [](void *user) { return static_cast<Caller *>(user)->event(2, 1); };
    events.endSection = [](void *user) { return static_cast<Caller *>(user)->event(1, 0); };
    depth_ = 0;
    const int32_t result = PxReadEvents(reader_, &events, this);
    require(result != PxGood || depth_ == 0, "a section that was read has ended");
    sectionRead(result);
  }

  int32_t event(int from, int to) {
    require(depth_ == from, "the events nest");
    depth_ = to;
    if (choices_.below(16) == 0) requireBusy();
    return choices_.below(64) == 0;
  }

  // Opens, reads or closes an object, of those that are there and of others.
  void object() {
    uint32_t count = 0;
    require(PxObjectCount(reader_, &count) == PxGood, "objects can be counted");
    const uint32_t number = choices_.below(4);
    uint64_t handle = 0;
    const int32_t opened = PxOpenObject(reader_, number, &handle);
    require((opened == PxErrorObject) == (number == 0 || number > count), "objects are numbered");
    if (opened == PxGood) handles_.push_back(handle);
    if (handles_.empty()) return;
    const size_t which = choices_.below(4) % handles_.size();
    std::string piece(1 + choices_.below(200), '\0');
    uint64_t got = 0;
    for (uint32_t i = 0; i < 4; ++i) {
      const int32_t read = PxReadObject(reader_, handles_[which], piece.data(), piece.size(), &got);
      require(read != PxErrorInternal && read != PxErrorObject, "what is open can be read");
      require((read == PxGood) == (got > 0) && got <= piece.size(), "as much as is told");
      if (read != PxGood) break;
    }
    if (choices_.yes()) return;
    require(PxCloseObject(reader_, handles_[which]) == PxGood, "what is open can be closed");
    require(PxCloseObject(reader_, handles_[which]) == PxErrorObject, "once");
    require(PxReadObject(reader_, handles_[which], piece.data(), 1, &got) == PxErrorObject,
            "and not read behind that");
    handles_.erase(handles_.begin() + static_cast<std::ptrdiff_t>(which));
  }

  // Reads what a host of the filter is given.
  void document() {
    int16_t format = 0;
    VcardIo *view = nullptr;
    const int32_t result = PxNextDocument(reader_, &format, &view);
    sectionRead(result);
    if (result != PxGood) return;
    require(format == VcardFormatVcard || format == VcardFormatVcalendar, "a format");
    char piece[500];
    uint32_t count = 1;
    for (uint32_t i = 0; i < 100 && count > 0; ++i) {
      count = 0;
      if (view->Read(view, piece, sizeof piece, &count) != 0) break;
      require(count <= sizeof piece, "no more than was asked for");
    }
  }

  void misuse() {
    PxText text;
    PxEvents events{};
    uint64_t got = 0;
    char byte;
    require(PxReadJson(reader_, nullptr) == PxErrorArgument, "null is no text");
    require(PxReadJson(nullptr, &text) == PxErrorArgument, "null is no reader");
    require(PxWriteJson(reader_, nullptr, nullptr) == PxErrorArgument, "null is no sink");
    require(PxReadEvents(reader_, nullptr, nullptr) == PxErrorArgument, "null is no events");
    const int32_t size = PxReadEvents(reader_, &events, nullptr);
    require(size == PxErrorArgument || size == PxErrorOrder, "events have their size");
    require(PxOpenFile(reader_, nullptr) == PxErrorArgument, "null is no path");
    require(PxOpenMemory(reader_, nullptr, 1) == PxErrorArgument, "null is no memory");
    require(PxOpenIo(reader_, nullptr) == PxErrorArgument, "null is no object");
    require(PxReadObject(reader_, 999'999, &byte, 1, &got) == PxErrorObject, "no object of others");
    require(PxCloseObject(reader_, 0) == PxErrorObject, "handles aren't 0");
    require((PxSetName(reader_, "\xFF<name>") == PxErrorOrder) == (state_ == State::Closed),
            "what is open has a name");
  }

  std::string_view text_;
  Choices &choices_;
  MemoryIo io_;
  PxReader *reader_ = PxNewReader();
  State state_ = State::Closed;
  int depth_ = 0;
  std::vector<uint64_t> handles_;
};

}  // namespace
}  // namespace px::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  using namespace px::fuzz;
  const std::string_view text = textOf(data, size);
  Choices choices(text);
  Caller caller(text, &choices);
  if (choices.below(8) > 0) caller.open();
  for (int i = 0; i < 24; ++i) caller.call();
  caller.open();
  caller.finish();
  return 0;
}

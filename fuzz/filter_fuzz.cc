// The filter under any host: the calls are the same however the input is read, where the run stops
// and whether its state is put back; sections, definitions and styles nest; ranges lie inside the
// input; a call that fails does no harm.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "host/filter/card_run.h"
#include "host/writers/trace_writer.h"

namespace px::fuzz {
namespace {

constexpr uint32_t kStyles = 9;
constexpr uint32_t kListingStyle = 7;  // the first one of paragraphs

struct Range {
  uint64_t start, length;
};

// The trace as one text, with a look at the order of the calls.
class Checker : public TraceWriter {
 public:
  Checker(size_t inputSize, std::string *trace)
      : TraceWriter([trace](std::string_view line) {
          *trace += line;
          *trace += '\n';
        }),
        trace_(*trace),
        inputSize_(inputSize) {}

  void beginSection(uint32_t a, uint32_t b, uint32_t c) override {
    require(!inSection_ && !ended_, "a section begins in a section or behind the end");
    inSection_ = true;
    inListing = false;
    TraceWriter::beginSection(a, b, c);
  }
  void beginDefinition(uint32_t type, uint32_t id, const void *record) override {
    require(open_.empty(), "a definition in a definition");
    const bool style = type == SoDefinitionStyle;
    require(style ? id == styles_ : id == ++attachments_ && data_ == Data::Committed,
            "definitions come in order");
    if (style) ++styles_;
    data_ = Data::None;
    open_ = {type, id};
    TraceWriter::beginDefinition(type, id, record);
  }
  void endDefinition(uint32_t type, uint32_t id) override {
    require((open_ == std::vector<uint32_t>{type, id}), "the definition that was begun ends");
    open_.clear();
    TraceWriter::endDefinition(type, id);
  }
  void useStyle(uint32_t id) override {
    require(inSection_ && open_.empty(), "a style stands in a section, outside of definitions");
    require(id < styles_ && styles_ == kStyles, "a style is defined before it is used");
    inListing = inListing || id >= kListingStyle;
    TraceWriter::useStyle(id);
  }
  void emitChars(std::span<const uint16_t> codes, bool /*more*/) override {
    require(inSection_, "text stands in a section");
    trace_.append(reinterpret_cast<const char *>(codes.data()), codes.size_bytes());
  }
  void emitSpecial(uint32_t kind) override {
    require(kind == SoSpecialTab || kind == SoSpecialLineBreak || kind == SoSpecialSeparator,
            "a kind of SoEmitSpecial");
    TraceWriter::emitSpecial(kind);
  }
  bool emitBreak(uint32_t kind, uint32_t zero) override {
    require(inSection_ && open_.empty() && !ended_, "a break stands in a section");
    if (kind == SoBreakSection || kind == SoBreakDocument) inSection_ = false;
    ended_ = kind == SoBreakDocument;
    TraceWriter::emitBreak(kind, zero);
    return kind == SoBreakParagraph && paragraph_ < 256 && stops[paragraph_++];
  }
  void setObjectData(uint32_t selector, uint64_t a, uint64_t b) override {
    TraceWriter::setObjectData(selector, a, b);
    if (selector == SoObjectDataRange) {
      require(a + b <= inputSize_ + 1 && b > 0, "an object lies inside the input");
      ranges.push_back({a, b});
    } else if (selector == SoObjectDataExtent) {
      require(a <= b && b <= inputSize_, "an attachment lies inside the input");
      ranges.push_back({a, b - a});
    } else {
      require(selector == SoObjectDataKind && a == 2 && b == 0, "a selector of object data");
    }
    data_ = Data::Set;
  }
  void commitObjectData() override {
    require(data_ == Data::Set, "object data is set before it is committed");
    data_ = Data::Committed;
    TraceWriter::commitObjectData();
  }
  void emitObject(const VcardObjectRecord &object) override {
    require(data_ == Data::Committed, "an object's data is committed before it");
    data_ = Data::None;
    TraceWriter::emitObject(object);
  }

  std::array<bool, 256> stops{};  // by paragraph
  std::vector<Range> ranges;
  bool inListing = false;

 private:
  enum class Data { None, Set, Committed };

  std::string &trace_;
  const size_t inputSize_;
  bool inSection_ = false;
  bool ended_ = false;
  std::vector<uint32_t> open_;  // type and id of the open definition
  uint32_t styles_ = 0;
  uint32_t attachments_ = 0;
  Data data_ = Data::None;
  size_t paragraph_ = 0;
};

struct Run {
  int16_t format = VcardFormatVcard;
  MemoryIoOptions io{};
  std::array<bool, 256> stops{};
  bool restores = false;  // the state is put back at each stop in the listing
  bool opensObjects = false;
};

std::string readObject(VcardIo *io, uint32_t size) {
  std::string content, piece(size, '\0');
  for (uint32_t count = 1; count > 0;) {
    if (io->Read(io, piece.data(), size, &count) != 0) break;
    require(count <= size, "a read gives no more than was asked for");
    content.append(piece, 0, count);
  }
  return content;
}

// The content is the same in pieces of any size, and from any place.
void readObjects(const FilterLibrary &filter, VcardStream *stream,
                 const std::vector<Range> &ranges) {
  constexpr size_t most = 8;
  for (size_t i = 0; i < std::min(ranges.size(), most); ++i) {
    const Range &range = ranges[i];
    VcardIo *io = nullptr;
    const bool empty = range.start == 0 || range.length == 0;
    require((filter.doSpecial(stream, range.start, &io, range.length, 0, 2) == 0) == !empty,
            "a range that isn't empty opens");
    if (empty) continue;
    const std::string content = readObject(io, 4096);
    require(content.size() <= range.length, "content is no longer than its text");
    const uint64_t middle = content.size() / 2;
    require(io->Seek(io, 0, middle) == 0, "content can be gone back in");
    require(readObject(io, 5) == content.substr(middle), "content is the same again");
    io->Close(io);
  }
}

// The trace, nothing when the text isn't recognised.
std::string traceOf(std::string_view text, const Run &run) {
  const FilterLibrary &filter = filterLibrary();
  MemoryIo io(text, run.io);
  std::string trace;
  Checker checker(text.size(), &trace);
  checker.stops = run.stops;
  CardRun cardRun(filter, &io, &checker);
  if (cardRun.open(run.format) != VcardOpenGood) return {};
  uint32_t last;
  do {
    cardRun.beginSection();
    while ((last = cardRun.read()) == SoBreakParagraph) {
      if (!run.restores || !checker.inListing) continue;
      std::string saved(VcardSavedSize, '\0');
      filter.streamTell(0, cardRun.data());
      filter.getData(saved.data(), cardRun.data());
      filter.setData(saved.data(), cardRun.data());
      require(filter.streamSeek(0, cardRun.data()) == 0, "the state can be put back");
    }
  } while (last == SoBreakSection);
  if (run.opensObjects) readObjects(filter, cardRun.stream(), checker.ranges);
  return trace;
}

void setBuffer(uint32_t kilobytes) {
  const bool own = kilobytes > 0;
  filterLibrary().setGlobalOption(UTOptionInputBuffer, own ? &kilobytes : nullptr,
                                  sizeof kilobytes);
}

}  // namespace
}  // namespace px::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  using namespace px;
  using namespace px::fuzz;
  const std::string_view text = textOf(data, size);
  Choices choices(text);
  Run run;
  run.format = choices.yes() ? VcardFormatVcard : VcardFormatVcalendar;
  run.opensObjects = true;
  const std::string whole = traceOf(text, run);
  if (whole.empty()) return 0;

  Run other = run;
  other.opensObjects = false;
  other.io = chooseReads(&choices);
  constexpr uint32_t buffers[] = {0, 1, 4, 64};
  setBuffer(buffers[choices.below(4)]);
  // A stop undoes that a byte 0xFF reads as the end of the input.
  if (text.find('\xFF') == text.npos) {
    for (bool &stop : other.stops) stop = choices.yes();
    other.restores = choices.yes();
  }
  require(traceOf(text, other) == whole, "the same calls however the input is read");

  other.io.failing = static_cast<IoCall>(choices.below(4));
  other.io.failAt = 1 + choices.below(64);
  other.io.failOn = choices.yes();
  other.restores = false;
  traceOf(text, other);
  setBuffer(0);
  return 0;
}

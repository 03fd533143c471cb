// The source view and what is read through it: from any bytes no line is lost that no fault tells
// of, each property comes out once, the work is bounded.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "host/io/limited_io.h"
#include "host/reading/file_reading.h"
#include "host/source/ascii_case.h"
#include "host/source/source_view.h"
#include "host/source/unicode_input.h"
#include "host/source/utf8.h"

namespace px::fuzz {
namespace {

// Notes where the events say that they stand, and that they come in order.
class Places : public CardEvents {
 public:
  void beginSection(const Section &section) override {
    require(where_ == Where::Outside, "a section begins outside of any");
    require(section.number == ++sections, "sections are numbered");
    require(section.partOf < section.number, "a section is part of an earlier one");
    where_ = Where::Section;
    if (section.extent) covered.push_back(*section.extent);
    isAgent_ = section.component == "VCARD" && section.partOf > 0;
    if (section.extent && isAgent_) agents.push_back(*section.extent);
  }
  void beginSummaryLine(SummaryKind, bool) override {
    require(where_ == Where::Section && !listing_, "a summary line stands before the properties");
    where_ = Where::SummaryLine;
  }
  void endSummaryLine(const std::vector<std::string> &) override {
    require(where_ == Where::SummaryLine, "a summary line ends");
    where_ = Where::Section;
  }
  void beginProperty(const Property &property) override {
    require(where_ == Where::Section, "a property stands in a section");
    where_ = Where::Property;
    listing_ = true;
    ++properties;
    if (property.extent) {
      covered.push_back(*property.extent);
      lines.push_back(*property.extent);
    }
  }
  void text(std::string_view utf8) override {
    require(where_ == Where::Property || where_ == Where::SummaryLine, "text stands in a line");
    bool cut;
    // The one character that this says is none, NUL, can stand in a value.
    for (size_t at = 0; at < utf8.size(); ++at) {
      at += validUtf8Length(utf8.substr(at), &cut);
      require(at >= utf8.size() || utf8[at] == '\0', "text is UTF-8");
    }
  }
  void object(const PlacedObject &object) override {
    require(where_ == Where::Property, "an object stands in a property");
    if (object.extent) covered.push_back(*object.extent);
    const OpenIo io = object.open();
    char piece[1000];
    uint64_t size = 0;
    for (uint32_t count = 1; count > 0; size += count) {
      require(io->Read(io.get(), piece, sizeof piece, &count) == 0, "an object can be read");
    }
    require(!object.size || size == *object.size, "an object has the size that was told");
  }
  void endProperty() override {
    require(where_ == Where::Property, "a property ends");
    where_ = Where::Section;
  }
  void endSection() override {
    require(where_ == Where::Section, "a section ends");
    where_ = Where::Outside;
    listing_ = false;
  }
  bool ended() const { return where_ == Where::Outside; }

  uint32_t sections = 0;
  uint64_t properties = 0;
  std::vector<Extent> covered, lines, agents;

 private:
  enum class Where { Outside, Section, SummaryLine, Property };
  Where where_ = Where::Outside;
  bool listing_ = false;
  bool isAgent_ = false;
};

bool liesIn(const std::vector<Extent> &extents, uint64_t position) {
  return std::any_of(extents.begin(), extents.end(), [&](const Extent &extent) {
    return extent.offset <= position && position < extent.offset + extent.length;
  });
}

// Every line of the text that isn't empty begins or ends something, or lies in a property or in a
// card within one.
void requireAllLines(std::string_view text, const Places &places) {
  for (size_t at = text.starts_with("\xEF\xBB\xBF") ? 3 : 0; at < text.size();) {
    const size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    const std::string_view line = text.substr(at, end - at);
    const size_t first = std::min(line.find_first_not_of(" \t"), line.size());
    if (first < line.size() && !liesIn(places.lines, at + first) &&
        !liesIn(places.agents, at + first)) {
      std::string head(line.substr(0, std::min(line.find_first_of(";:"), line.size())));
      std::erase_if(head, [](char c) { return c == ' ' || c == '\t'; });
      if (head.find('.') != head.npos) head.erase(0, head.rfind('.') + 1);
      const bool frame = equalsNoCase(head, "BEGIN") || equalsNoCase(head, "END");
      // A head can be folded anywhere.
      const bool folded = line.find(':') == line.npos || first > 0;
      require(frame || folded || equalsNoCase(head, "AGENT"), "no line is lost without a fault");
    }
    at = end + 1;
  }
}

}  // namespace
}  // namespace px::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  using namespace px;
  using namespace px::fuzz;
  const std::string_view text = textOf(data, size);
  Choices choices(text);
  const MemoryIoOptions options = chooseReads(&choices);
  MemoryIo memory(text, options);
  const WorkLimit limit(false);
  LimitedIo io(&memory, &limit, PastLimit::Fails);

  bool faults = false;
  const FaultSink sink = [&](uint64_t line, const std::string &fault) {
    faults = true;
    require(line > 0 && line <= text.size() + 1 && !fault.empty(), "a fault has its line");
  };
  uint64_t noted = 0;
  bool isUnit = true;
  try {
    SourceView view(&io, sink);
    constexpr uint64_t free = 8 * 1024 * 1024;
    require(io.delivered() <= free + 40 * size, "the view's work is bounded");
    UnicodeInput input(&memory, [](uint64_t, const std::string &) {});
    isUnit = input.io() == &memory;
    LineNoteReader notes(&view.notes());
    SectionNote section;
    while (notes.nextSection(&section)) {
      LineNote note;
      while (notes.nextLine(&note)) {
        noted += !note.dropped;
        require(!note.extent || note.extent->offset + note.extent->length <= size,
                "a line lies in the file");
      }
    }
  } catch (const std::runtime_error &) {
    return 0;  // no card
  }

  Places places;
  readFile(filterLibrary(), &io, Reading::Viewed, sink, &places);
  require(places.ended(), "what was begun ends");
  require(places.properties == noted, "every line of the view comes out once");
  for (const Extent &extent : places.covered) {
    require(extent.offset <= size && extent.length <= size - extent.offset,
            "what is told of lies in the file");
  }
  if (!faults && isUnit) requireAllLines(text, places);
  return 0;
}

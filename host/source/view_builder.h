// Makes the view of a file: goes through its structure and gives each property to PropertyView.

#ifndef PX_HOST_SOURCE_VIEW_BUILDER_H
#define PX_HOST_SOURCE_VIEW_BUILDER_H

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/source/byte_source.h"
#include "host/source/component_lines.h"
#include "host/source/content_lines.h"
#include "host/source/line_notes.h"
#include "host/source/property_view.h"
#include "host/source/unicode_input.h"
#include "host/source/view_text.h"

namespace px {

class ViewBuilder {
 public:
  // What nests deeper, and what one card holds beyond this number, is reported and left out.
  static constexpr uint32_t DeepestNesting = 16;
  static constexpr size_t MostNested = 100'000;

  // Nothing given is owned; `documents` takes a ViewDocument after the other.
  ViewBuilder(UnicodeInput *input, SpoolFile *text, LineNotes *notes, SpoolFile *documents,
              const FaultSink *faults);

  // Throws std::runtime_error when there is no card.
  void build();

 private:
  // An input with what reads it: the file, or the cards that stood in it as escaped text, each in a
  // line of the file.
  struct Input {
    Input(VcardIo *io, bool countLines, ViewText *view, LineNotes *notes, const FaultSink *faults);
    ByteSource source;
    ContentLines lines;
    PropertyView properties;
    SourceFile file;
  };

  // A card or component that is still to be written.
  struct Component {
    Input *input;
    Place begin;
    uint64_t end;
    uint32_t partOf;
    uint32_t depth;
    std::optional<Extent> extent;  // where it isn't part of the file as it stands
  };

  void fault(uint64_t line, const std::string &text) const { (*faults_)(line, text); }
  void reportOutside();
  void buildCalendar(const Place &begin);
  void buildComponent(const Place &begin, uint64_t end, uint32_t partOf);
  Place buildSection(const Component &component);
  void addNested(const Component &component);
  std::string versionOf(Input *input, const std::string &name);
  std::optional<Extent> extentOf(const Component &component, uint64_t end);
  const std::string &guessedCharset();

  void openSection(int16_t format);
  void closeSection();
  void closeDocument();

  UnicodeInput &unicode_;
  ViewText view_;
  LineNotes &notes_;
  SpoolFile &documents_;
  const FaultSink *faults_;

  SpoolFile agents_;  // cards that stood in the file as escaped text
  SpoolIo agentsIo_;
  Input file_, agentsInput_;

  std::string calendarVersion_;
  std::deque<Component> queue_;    // what is still to be written, in order
  std::vector<Component> nested_;  // what stands in the section that is being written
  SectionNote section_;
  int16_t format_ = 0;  // of the open document; 0: none is open
  uint64_t documentStart_ = 0;
  uint64_t outsideLine_ = 0;  // where text outside of any card began; 0: there was none
  std::string guess_;
};

}  // namespace px

#endif

// One property on its way from the file to the view: its value decoded, its line written in the
// form that the filter reads whole, its note taken.
//
// Some properties are no lines of the view as they are. Fields that the filter would cut, a value
// that it would pass over (an AGENT that is no card) and empty ones that would take a place in the
// summary are written under another name, which only the note tells. What the summary then lacks
// is written once more in a line of its own, whose output in the listing is dropped.

#ifndef PX_HOST_SOURCE_PROPERTY_VIEW_H
#define PX_HOST_SOURCE_PROPERTY_VIEW_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/source/component_lines.h"
#include "host/source/content_lines.h"
#include "host/source/line_notes.h"
#include "host/source/line_parameters.h"
#include "host/source/text_decoder.h"
#include "host/source/unicode_input.h"
#include "host/source/value_bytes.h"
#include "host/source/view_text.h"

namespace px {

// What the input as a whole says to its properties.
struct SourceFile {
  bool unicode = false;  // a byte-order mark told the set: CHARSET holds for encoded values only
  // Tells where a position of the input lies in the file; null: it lies nowhere there.
  UnicodeInput *positions = nullptr;
  // The set of texts that name none and aren't UTF-8.
  std::function<const std::string &()> guessedCharset;
};

class PropertyView {
 public:
  // Nothing given is owned. `source` is where the values are read.
  PropertyView(ByteSource *source, ViewText *view, LineNotes *notes, const FaultSink *faults)
      : source_(source), view_(view), notes_(notes), faults_(faults) {}

  void beginSection(int16_t format, const VersionRules &rules, const SourceFile *file,
                    SectionNote *section);

  // Before the section's END line is written.
  void endSection();

  // Reads the value of `line`, on whose first byte the source stands, and writes the property.
  void add(const ContentLine &line);

  // Whether the value of `line` is a card in escaped text. Then it is taken, and the card's text
  // put at `text`.
  bool takeAgentsCard(const ContentLine &line, SpoolFile *text);

 private:
  void fault(const std::string &text) const { (*faults_)(start_.line, text); }
  const LineHead *headOf(const ContentLine &line);
  const LineHead *readHead(const ContentLine &line, uint32_t rules);
  std::string headText(std::string_view bytes);
  std::optional<Extent> extentOf(uint64_t from, uint64_t end) const;

  bool takeDataPrefix(const ContentLine &line);
  bool beginsAsBase64(const ContentLine &line);
  void addObject(bool percents);

  void endValue(const ValueBytes &value);
  void tellOfBreak(const ValueBytes &value);

  void addText(const ContentLine &line);
  bool addBase64Text(const ContentLine &line);
  void addRead(std::string_view text);
  bool collect(std::string_view first, ValueBytes *value);
  bool decodeBase64();
  void beginDecoder(bool isUtf8);
  void addWhole(std::string_view text);
  void addLong(const ContentLine &line, ValueBytes *value);
  void addFields(std::string_view text);

  void noteGroup(std::string_view text);
  void endLine(uint64_t valueStart, bool isCut = false);
  void putText(std::string_view text);
  template <class Put>
  void putForSummary(Put put);
  void putPlainLine(std::string_view text);
  void putPlainHead();
  void putFields(const std::vector<std::string_view> &fields, bool isCut);

  bool isIndexed() const;

  ByteSource *source_;
  ViewText *view_;
  LineNotes *notes_;
  const FaultSink *faults_;

  int16_t format_ = 0;
  VersionRules rules_;
  const SourceFile *file_ = nullptr;
  SectionNote *section_ = nullptr;
  std::string nameFromParts_;
  std::vector<std::string> groups_;  // that the section's lines have had so far

  // Of the current line.
  Place start_;
  const KnownProperty *known_ = nullptr;
  Transfer transfer_ = Transfer::Plain;
  char separator_ = 0;  // of fields in the file; 0: the value has none
  char divider_ = 0;    // of fields in the text that is made of the value
  std::optional<LineNote> note_;
  std::string raw_, decoded_, text_;
  std::vector<std::string_view> fields_;
  TextDecoder decoder_;
};

}  // namespace px

#endif

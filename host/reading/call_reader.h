// The reader of the calls: the filter's output in, what a person means out.
//
// The filter writes paragraphs: styles, strings, tabs and line breaks. Which string is a label, a
// type, a field or a value is told by the styles and by where breaks and tabs stand; this part
// alone knows how. Where a view was made of the file, its notes are joined to the calls: the n-th
// property of a listing is the n-th line of the section's notes. Label or name are compared, and
// where they don't agree the calls stand alone.
//
//     useStyle(label) "Telephone" useStyle(plain) "        ( " "home" " )" break    the head
//     tab tab "555-0100" break emitBreak(1)                                         the value
//
// What comes of it is promised to be well nested, with the kinds of summary lines in the order of
// SummaryKind.

#ifndef PX_HOST_READING_CALL_READER_H
#define PX_HOST_READING_CALL_READER_H

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/filter/filter_library.h"
#include "host/filter/output.h"
#include "host/reading/card_events.h"
#include "host/reading/character_decoder.h"
#include "host/source/line_notes.h"

namespace px {

class CallReader : public Output {
 public:
  // Reads one file's calls. `notes` tells of all its sections, or is null; `viewText` is the text
  // that their summary notes point into. Nothing given is owned.
  CallReader(const FilterLibrary &filter, CardEvents *events, LineNoteReader *notes,
             const SpoolFile *viewText);

  // Tells the next run over the file, or over a part of it, before it reads. `inPlace`: the filter
  // reads the file itself, so the types are those that the calls tell.
  void beginRun(int16_t format, VcardStream *stream, bool inPlace);

  // Ends what is open where a run has been given up.
  void endRun();

  // Where in the file the last line stands that the calls have come to, as far as notes tell.
  uint64_t position() const;

  void emitChars(std::span<const uint16_t> codes) override;
  void emitSpecial(uint32_t kind) override;
  void setCharHeight(uint32_t height) override;
  bool emitBreak(uint32_t kind, uint32_t zero) override;
  void beginSection(uint32_t, uint32_t, uint32_t) override;
  void emitObject(const VcardObjectRecord &object) override;
  void beginDefinition(uint32_t type, uint32_t id, const void *record) override;
  void endDefinition(uint32_t type, uint32_t id) override;
  void setCharset(uint32_t set) override;
  void emitResourceString(uint32_t id) override;
  void useStyle(uint32_t id) override;
  void setAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t d) override;
  void setObjectData(uint32_t selector, uint64_t a, uint64_t b) override;

 private:
  enum class Role : uint8_t { Paragraph, Label, SubLabel, Plain, Heading };
  struct Style {
    Role role = Role::Plain;
    uint32_t height = 0;
    bool bold = false;
    bool italic = false;
  };

  enum class Place {
    Nothing,
    Summary,
    Label,  // of a property, before its value; its types or parameters are still to come
    List,   // those
    Value,
    Title,  // of an attachment, in Value
  };

  // A line of the summary that waits until its kind is known.
  struct HeldLine {
    std::string text;  // with LF for line breaks
    std::vector<std::string> types;
  };

  // The summary.
  void beginHeading(uint32_t height);
  void summaryText(std::string_view utf8);
  void summaryBreak();
  void endBlock();
  void beginLine();
  void endLine();
  void endSummary();
  void putHeld(bool hasAddress);
  void complete(SummaryKind kind);
  void completeAddresses();
  void putViewValue(const SummaryNote &note);
  void chooseAddress();
  SummaryKind kindOfBlock() const;

  // The listing.
  void beginLabel();
  void beginValue();
  void join();
  void takeList();
  void valueText(std::string_view utf8);
  void valueBreak();
  void putBreaks(uint32_t count);
  void beginField(uint32_t label);
  void beginLineField();
  void endField();
  void endProperty();
  void placeObject();

  void takeRun();
  void endSection();

  const FilterLibrary &filter_;
  CardEvents &events_;
  LineNoteReader *notes_;
  const SpoolFile *viewText_;
  int16_t format_ = 0;
  VcardStream *stream_ = nullptr;
  bool inPlace_ = false;

  std::vector<Style> styles_;
  Style defined_;

  CharacterDecoder decoder_;
  std::string run_;
  Place place_ = Place::Nothing;
  uint32_t section_ = 0;
  bool sectionOpen_ = false;
  std::optional<SectionNote> note_;

  // Of the summary.
  uint32_t heading_ = 0;  // which of the heading styles, from 0; each is smaller
  uint32_t block_ = 0;    // paragraphs in the smallest, or, of a calendar, in any
  SummaryKind kind_ = SummaryKind::Entry;
  bool lineOpen_ = false;
  SummaryNote summaryNote_;    // of the line, where there is one
  bool separator_ = false;     // stands between two parts of a name
  uint32_t breaks_ = 0;        // line breaks that wait for text behind them
  bool stringBegins_ = false;  // what comes next begins a string
  bool inTypes_ = false;
  std::vector<std::string> types_;
  bool holding_ = false;                     // lines wait in held_
  bool lineHeld_ = false;                    // the last of them is open
  std::vector<std::vector<HeldLine>> held_;  // by block
  size_t heldSize_ = 0;
  SummaryRole addressRole_ = SummaryRole::None;  // which of the notes the filter's address is of
  uint32_t addressNumber_ = 0;

  // Of the property.
  bool paragraphBegins_ = false;
  bool propertyOpen_ = false;
  bool muted_ = false;  // its events are dropped
  Property property_;
  std::string list_;  // text behind the label
  std::optional<LineNote> line_;
  const KnownProperty *known_ = nullptr;
  uint32_t tabsDue_ = 0;  // tabs that are layout
  bool inSubLabel_ = false;
  bool fieldOpen_ = false;
  bool skipsField_ = false;  // its text is of an attendee's parameter
  uint32_t fields_ = 0;      // so far
  Parameter late_;
  bool blankHeld_ = false;

  uint64_t dataStart_ = 0;
  uint64_t dataLength_ = 0;
  std::string title_;
};

}  // namespace px

#endif

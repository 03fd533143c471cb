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

#include <cstdint>
#include <optional>
#include <string>

#include "host/filter/filter_library.h"
#include "host/filter/output.h"
#include "host/reading/call_styles.h"
#include "host/reading/card_events.h"
#include "host/reading/character_decoder.h"
#include "host/reading/property_reader.h"
#include "host/reading/summary_reader.h"
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

  // Where in the file the section stands that the calls have come to, as far as notes tell.
  uint64_t position() const { return note_ && note_->extent ? note_->extent->offset : 0; }

  void emitChars(std::span<const uint16_t> codes, bool more) override;
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
  enum class Place {
    Outside,
    Summary,
    Listing,
    Title,  // of an attachment, in the listing
  };

  void endSection();

  CardEvents &events_;
  LineNoteReader *notes_;
  int16_t format_ = 0;
  bool inPlace_ = false;
  uint32_t section_ = 0;
  std::optional<SectionNote> note_;

  CallStyles styles_;
  SummaryReader summary_;
  PropertyReader property_;
  Place place_ = Place::Outside;
  bool paragraphBegins_ = false;

  CharacterDecoder decoder_;
  bool stringBegins_ = false;  // no character of the string has come

  uint64_t dataStart_ = 0;  // of the object that comes next
  uint64_t dataLength_ = 0;
  std::string title_;
};

}  // namespace px

#endif

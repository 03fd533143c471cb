// The summary's calls, read: which line of the business card is what.
//
// The calls tell name, title and organisation by their headings. The rest is told by the notes;
// where there are none, the paragraphs in the smallest heading wait until all have come, since only
// their number tells whether the first one is an address. What the filter's summary has no room for
// is added from the view.

#ifndef PX_HOST_READING_SUMMARY_READER_H
#define PX_HOST_READING_SUMMARY_READER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/io/spool_file.h"
#include "host/reading/card_events.h"
#include "host/source/line_notes.h"

namespace px {

class SummaryReader {
 public:
  // Nothing is owned. `notes` and `viewText` can be null, as told in call_reader.h.
  SummaryReader(CardEvents *events, LineNoteReader *notes, const SpoolFile *viewText)
      : events_(*events), notes_(notes), viewText_(viewText) {}

  // `note` is of the section that begins, or null.
  void begin(int16_t format, const SectionNote *note, bool inPlace);
  // Gives out what waits. Nothing but begin comes behind it.
  void end();

  // The calls, in their order. `stringBegins`: nothing of the string has come before.
  void heading(uint32_t level);
  void text(std::string_view utf8, bool stringBegins);
  void label(uint32_t id);
  void lineBreak();
  void tab();
  void separator();
  void endParagraph();

 private:
  // A line that waits until its kind is known.
  struct HeldLine {
    std::string text;  // with LF for line breaks
    std::vector<std::string> types;
  };

  SummaryKind kindOfParagraph() const;
  void beginLine();
  void endLine();
  void putHeld(bool hasAddress);
  void chooseAddress();
  void complete(SummaryKind kind);
  void completeAddresses();
  void putViewValue(const SummaryNote &note);

  CardEvents &events_;
  LineNoteReader *notes_;
  const SpoolFile *viewText_;

  int16_t format_ = 0;
  const SectionNote *note_ = nullptr;
  bool inPlace_ = false;
  uint32_t heading_ = 0;  // which of the heading styles, from 0; each is smaller
  uint32_t block_ = 0;    // paragraphs so far, of a card those in the smallest heading
  SummaryRole addressRole_ = SummaryRole::None;  // of the notes that have the filter's address,
  uint32_t addressNumber_ = 0;                   // which one it is

  SummaryKind kind_ = SummaryKind::Entry;  // of the paragraph
  bool lineOpen_ = false;
  SummaryNote noteOfLine_;
  uint32_t breaks_ = 0;     // line breaks that wait for text behind them
  bool separator_ = false;  // likewise, between two parts of a name
  bool inTypes_ = false;
  std::vector<std::string> types_;

  bool holding_ = false;                     // lines wait in held_
  bool lineHeld_ = false;                    // the last of them is open
  std::vector<std::vector<HeldLine>> held_;  // by paragraph
  size_t heldSize_ = 0;
};

}  // namespace px

#endif

// A file as the filter reads it well.
//
// The filter reads one dialect of the card formats exactly. The files that people have are in
// others, so the host does not show it the file but a view: a text with the same properties in the
// same order that says everything in that dialect (view_text.h), with notes beside it of what the
// filter will not tell (line_notes.h). A file that needs no change is its own view.
//
// What the view makes of a file's structure:
//
//   - each card is a section, and so is each component of a calendar: an event, an alarm, a time
//     zone, the calendar's own lines;
//   - what stands in another one, a card behind AGENT or an alarm in an event, comes behind it;
//   - cards and calendars in one file are documents of their own, since the filter is opened for
//     one of the formats.
//
// Nothing grows with the file but temporary files. What cannot be read is told to a FaultSink.

#ifndef PX_HOST_SOURCE_SOURCE_VIEW_H
#define PX_HOST_SOURCE_SOURCE_VIEW_H

#include <cstdint>

#include "host/source/component_lines.h"
#include "host/source/line_notes.h"
#include "px/vcard_io.h"

namespace px {

// One input for the filter.
struct ViewDocument {
  int16_t format = 0;  // to open the filter with
  Extent text;         // in SourceView::text; of no length: the file itself is read
};

class SourceView {
 public:
  // Reads `file`, which isn't owned, to its end. Throws std::runtime_error when it can't be read or
  // holds no card, std::system_error when a temporary file fails.
  SourceView(VcardIo *file, const FaultSink &faults);

  // Reads the next document, in the order of the file; false when there is none left.
  bool nextDocument(ViewDocument *document);

  const SpoolFile &text() const { return text_; }
  const LineNotes &notes() const { return notes_; }

 private:
  SpoolFile text_;
  LineNotes notes_;
  SpoolFile documents_;
  uint64_t documentsRead_ = 0;  // in bytes
};

}  // namespace px

#endif

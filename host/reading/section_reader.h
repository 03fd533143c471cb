// A file read section by section: seen through its view or as it stands, run through the filter,
// its calls made into events.

#ifndef PX_HOST_READING_SECTION_READER_H
#define PX_HOST_READING_SECTION_READER_H

#include <optional>

#include "host/filter/card_run.h"
#include "host/filter/filter_library.h"
#include "host/reading/call_reader.h"
#include "host/reading/card_events.h"
#include "host/source/documents.h"
#include "host/source/line_notes.h"

namespace px {

class SectionReader {
 public:
  // Nothing given is owned; what can't be read goes into `faults`, here, all of it. Throws
  // std::runtime_error, whose text is for a person, when `io` is no card or can't be read.
  //
  // Past `limit` the reading ends as it does at the end of the file: what was begun ends, nothing
  // is thrown, and WorkLimit::stoppedAt tells.
  SectionReader(const FilterLibrary &filter, VcardIo *io, Reading reading, const FaultSink &faults,
                CardEvents *events, WorkLimit *limit);

  // Reads the next section into the events; false when there is none left. Throws as above,
  // std::bad_alloc, and what a member of the events throws.
  bool readSection();

  // Opens an object of the section that was read last, or is being read, by its PlacedObject's
  // place. It ends before the next section is read.
  OpenIo openObject(const Extent &place);

  // Whether nothing can be read any more, objects neither, since the limit is reached.
  bool isRefused() const { return isOver_ || documents_.isRefused(); }

 private:
  bool openDocument();
  bool readToEnd();

  const FilterLibrary &filter_;
  Documents documents_;
  std::optional<LineNoteReader> notes_;
  CallReader calls_;
  std::optional<CardRun> run_;
  bool sectionFollows_ = false;  // in the run
  bool isOver_ = false;          // the limit has ended it
};

// Opens the run for the format of its document, and ends it at the limit. Throws as the reader does.
void openRun(CardRun *run, int16_t format, Documents *documents);

}  // namespace px

#endif

// A whole file read: seen through its view or as it stands, run through the filter, its calls made
// into events.

#ifndef PX_HOST_READING_FILE_READING_H
#define PX_HOST_READING_FILE_READING_H

#include "host/filter/filter_library.h"
#include "host/io/limited_io.h"
#include "host/reading/card_events.h"
#include "host/source/component_lines.h"

namespace px {

enum class Reading {
  Viewed,  // today's cards, whole
  Raw,     // what the filter makes of the bytes
};

// Reads all of `io` into `events`, and what can't be read into `faults`, before the events of its
// section. Throws std::runtime_error, whose text is for a person, when `io` is no card or can't be
// read, std::bad_alloc, and what a member of `events` throws.
//
// Past `limit` the reading ends as it does at the end of the file: what was begun ends, nothing is
// thrown, and WorkLimit::check tells. Null: there is none.
void readFile(const FilterLibrary &filter, VcardIo *io, Reading reading, const FaultSink &faults,
              CardEvents *events, WorkLimit *limit = nullptr);

// Opens the run for the format that its input is of. Throws as readFile does.
class CardRun;
void openRun(CardRun *run, int16_t format);

// Reads all of an opened run over `io`, which is the file, or a text made of it where `isFile` is
// false. Answers false when the limit has ended it.
bool readLimited(CardRun *run, const LimitedIo &io, bool isFile, WorkLimit *limit);

}  // namespace px

#endif

// A whole file read: seen through its view or as it stands, run through the filter, its calls made
// into events.

#ifndef PX_HOST_READING_FILE_READING_H
#define PX_HOST_READING_FILE_READING_H

#include "host/filter/filter_library.h"
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
void readFile(const FilterLibrary &filter, VcardIo *io, Reading reading, const FaultSink &faults,
              CardEvents *events);

// Opens the run for the format that its input is of. Throws as readFile does.
class CardRun;
void openRun(CardRun *run, int16_t format);

}  // namespace px

#endif

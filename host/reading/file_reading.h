// A whole file read into events.

#ifndef PX_HOST_READING_FILE_READING_H
#define PX_HOST_READING_FILE_READING_H

#include "host/reading/section_reader.h"

namespace px {

// Reads all of `io` into `events`, and what can't be read into `faults`, before the events of its
// section. Throws, and ends at the limit, as SectionReader does. A null `limit`: there is none.
inline void readFile(const FilterLibrary &filter, VcardIo *io, Reading reading,
                     const FaultSink &faults, CardEvents *events, WorkLimit *limit = nullptr) {
  WorkLimit none(false);
  SectionReader sections(filter, io, reading, faults, events, limit ? limit : &none);
  while (sections.readSection()) {
  }
}

}  // namespace px

#endif

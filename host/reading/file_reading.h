// A whole file read into events.

#ifndef PX_HOST_READING_FILE_READING_H
#define PX_HOST_READING_FILE_READING_H

#include "host/reading/section_reader.h"

namespace px {

// Reads all of `io` into `events`, and what can't be read into `faults`, before the events of its
// section. Throws as SectionReader does.
inline void readFile(const FilterLibrary &filter, VcardIo *io, Reading reading,
                     const FaultSink &faults, CardEvents *events) {
  SectionReader sections(filter, io, reading, faults, events);
  while (sections.readSection()) {
  }
}

}  // namespace px

#endif

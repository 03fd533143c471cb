// Saves the objects of the sections that a reader reads.

#ifndef PX_HOST_COMMAND_OBJECT_SAVING_H
#define PX_HOST_COMMAND_OBJECT_SAVING_H

#include "host/command/card_reader.h"
#include "host/saving/object_extraction.h"

namespace px {

// Reads the next section and gives its objects to `extraction`; false when there is none left.
// Throws as CardReader::check and ObjectExtraction do.
bool saveObjects(CardReader *reader, ObjectExtraction *extraction);

}  // namespace px

#endif

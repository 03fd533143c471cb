// The objects of the sections that a reader reads, as events of the host.

#ifndef PX_HOST_COMMAND_OBJECT_EVENTS_H
#define PX_HOST_COMMAND_OBJECT_EVENTS_H

#include "host/command/card_reader.h"
#include "host/reading/card_events.h"

namespace px {

// Reads the next section and tells `target` where it, its properties and its objects begin; false
// when there is none left. Throws as CardReader::check and `target` do.
bool readObjects(CardReader *reader, CardEvents *target);

}  // namespace px

#endif

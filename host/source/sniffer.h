// Which of the two formats an input is.

#ifndef PX_HOST_SOURCE_SNIFFER_H
#define PX_HOST_SOURCE_SNIFFER_H

#include <cstdint>

#include "px/vcard_io.h"

namespace px {

// Answers VcardFormatVcalendar when the input begins with a BEGIN line of vCalendar, read as
// tolerantly as the filter does, and VcardFormatVcard for everything else: whether that is a card
// at all is the filter's to say. Looks at the first 64 KiB at most, and leaves `io` anywhere.
int16_t sniffFormat(VcardIo *io);

}  // namespace px

#endif

// Embedded objects: finding where Base64 text lies, and telling the host. Nothing is decoded here.

#ifndef PX_VCRD_OBJECTS_PLACEMENT_H
#define PX_VCRD_OBJECTS_PLACEMENT_H

#include <cstdint>

#include "vcrd/frame/vcard_data.h"

// Finds the extent of the Base64 text that begins at the stream, on which it stands as a value.
// Stores the position of its first byte at `start` and of the first byte behind it at `end`. The
// stream is left where the parser is to go on.
void VcardFindBase64Extent(uint32_t *start, uint32_t *end, VcardData *data);

// Places the object of an extent.
void VcardPutObject(uint32_t start, uint32_t end, VcardData *data);

// Places the Base64 text at the stream as an attachment, with the title of its X-FILENAME parameter
// or the host's text for one without.
void VcardPutAttach(VcardData *data);

#endif

#ifndef PX_VCRD_OUTPUT_INDEXING_PASS_H
#define PX_VCRD_OUTPUT_INDEXING_PASS_H

#include "vcrd/frame/vcard_data.h"
#include "vcrd/parser/property_names.h"

// Notes where the value of a line lies that the summary shows, and what its head said. Writes
// nothing to the host.
void VcardIndexProperty(VcardProperty property, VcardData *data);

#endif

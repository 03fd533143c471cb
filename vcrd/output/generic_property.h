#ifndef PX_VCRD_OUTPUT_GENERIC_PROPERTY_H
#define PX_VCRD_OUTPUT_GENERIC_PROPERTY_H

#include "vcrd/frame/vcard_data.h"

// Writes a property that has no form of its own: its name with the case of the file, its
// parameters as they stand there, and its value, undecoded.
void VcardPutGenericProp(VcardData *data);

#endif

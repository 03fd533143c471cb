#ifndef PX_VCRD_OUTPUT_PROPERTY_LISTING_H
#define PX_VCRD_OUTPUT_PROPERTY_LISTING_H

#include "vcrd/frame/vcard_data.h"
#include "vcrd/parser/property_names.h"

// Writes a line of the listing pass in the form of its property and consumes its value.
void VcardListProperty(VcardProperty property, VcardData *data);

#endif

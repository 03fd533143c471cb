// What belongs to one content line.

#ifndef PX_VCRD_PARSER_CONTENT_LINE_H
#define PX_VCRD_PARSER_CONTENT_LINE_H

#include "vcrd/frame/vcard_data.h"

// Resets the work area of a line, when the line has been handled.
void VcardClearProp(VcardData *data);

#endif

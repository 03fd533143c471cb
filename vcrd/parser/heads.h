#ifndef PX_VCRD_PARSER_HEADS_H
#define PX_VCRD_PARSER_HEADS_H

#include "vcrd/frame/vcard_data.h"

// Takes the heads of content lines that lie in the buffer, and hands each over with its value.
// Stops in front of a token that it doesn't take, for VcardGetToken; nothing more may be done
// before that is called. Answers true when it has stopped because the pass has ended or the host
// asks for a stop.
bool VcardReadHeads(VcardData *data);

#endif

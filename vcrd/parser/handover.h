// What the parser expects of the output that stands above it. It calls up in these two places and
// in no other:
//
//   TavoVcardDisplayProp  (px/vcrd.h) an action of the state tables, which the fast way calls too:
//                         the head of a content line is complete, the stream stands on the first
//                         byte of its value, TokenPos is that byte's position. Consumes the value,
//                         or leaves it to the scanner, and ends in VcardClearProp.
//   VcardPutSummary       below

#ifndef PX_VCRD_PARSER_HANDOVER_H
#define PX_VCRD_PARSER_HANDOVER_H

#include "vcrd/frame/vcard_data.h"

// Writes the summary of a section, when the indexing pass has ended. The stream and HasPushback are
// left anywhere; the parser moves back to the start of the section.
void VcardPutSummary(VcardData *data);

#endif

// What the parser does with the text of a token. The actions of the state tables (px/vcrd.h) do the
// same with a text that ends in a NUL.

#ifndef PX_VCRD_PARSER_ACTIONS_H
#define PX_VCRD_PARSER_ACTIONS_H

#include "vcrd/frame/vcard_data.h"
#include "vcrd/parser/token_text.h"

void VcardAddGroup(VcardTokenText text, VcardData *data);

inline void VcardSetPropName(VcardTokenText text, VcardData *data) { text.CopyTo(data->PropName); }

// A parameter's name. `TokenPos` is its position, here and in VcardSetParmValue.
void VcardSetParmId(VcardTokenText text, VcardData *data);

// A bare parameter.
void VcardSetParmValue(VcardTokenText text, VcardData *data);

// The value of the parameter that `ParmId` names.
void VcardSetIdParmValue(VcardTokenText text, VcardData *data);

#endif

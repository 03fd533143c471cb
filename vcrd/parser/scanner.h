// The token scanner: cuts the head of a content line at its periods, semicolons, equals signs and
// its colon.

#ifndef PX_VCRD_PARSER_SCANNER_H
#define PX_VCRD_PARSER_SCANNER_H

#include <cstdint>

#include "vcrd/frame/vcard_data.h"
#include "vcrd/parser/vcard_init.h"

// Scans one token into `text`, cut at 255 characters, and answers its number. `ParseState` says
// which delimiters count. White space before and inside a token falls away; a fold can stand
// anywhere. Sets `TokenPos` to the position where the token began. In StateValue it answers
// TokenEnd without reading: the value is left to whoever handles the line.
VcardToken VcardGetToken(VcardText &text, VcardData *data);

#endif

// Parameters of a content line: what a token means for the value. A token that means nothing is
// dropped. The actions are reached through the state tables.

#ifndef PX_VCRD_PARSER_PARAMETERS_H
#define PX_VCRD_PARSER_PARAMETERS_H

#include <cstdint>

#include "vcrd/frame/vcard_data.h"

// The numbers that `ParmId` holds: which named parameter the next value belongs to.
enum VcardParmId : int32_t {
  ParmNone = 0,
  ParmType = 1,
  ParmValue = 2,
  ParmEncoding = 3,
  ParmCharset = 4,
  ParmLanguage = 5,
  ParmRole = 6,
  ParmStatus = 7,
  ParmRsvp = 8,
  ParmExpect = 9,
  ParmExtension = 10  // a name that begins with x-
};

// The lookups tell what a word is, of which they take the row in the table of all words, or -1 for
// a text that is none. They answer 0 when it is theirs and -1, with nothing written, otherwise.

// Sets the flag of a type, and the flag that says that there is any.
int32_t VcardMatchType(int32_t word, VcardData *data);

int32_t VcardMatchValue(int32_t word, int32_t *kind);

int32_t VcardMatchEncoding(int32_t word, int32_t *encoding);

#endif

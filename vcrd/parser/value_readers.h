// Reading a value without writing it. The stream stands on the value's first byte.
//
// A quoted-printable value (`Encoding` 2) is read as raw bytes: folds and escapes play no part, a
// raw line end ends it, and the stream is left just behind that CR or LF. Any other value is read
// as logical characters: the end of the logical line ends it, and the first byte of the next line
// is left pushed back.

#ifndef PX_VCRD_PARSER_VALUE_READERS_H
#define PX_VCRD_PARSER_VALUE_READERS_H

#include <cstdint>

#include "vcrd/frame/vcard_data.h"

// Reads one field, logical characters whatever `Encoding` says, into `Value[index]`, cut at 255
// characters. Leading blanks are dropped. Answers 0 when a semicolon ended the field, 1 when the
// value has ended.
int32_t VcardReadField(int32_t index, VcardData *data);

// Reads the fields of the value into `Value`, empty where there is none, and consumes all of it.
void VcardReadFields(VcardData *data);

// Consumes the value.
void VcardSkipValue(VcardData *data);

// Consumes the value and answers the number of the version that it names: 1, 2 or 3.
int16_t VcardReadVersion(VcardData *data);

#endif

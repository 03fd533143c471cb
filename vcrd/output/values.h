// Values, written straight from the stream as long as they are, and the list of a line's types.
//
// In the listing pass a value stands two tabs in; in the summary it doesn't.

#ifndef PX_VCRD_OUTPUT_VALUES_H
#define PX_VCRD_OUTPUT_VALUES_H

#include "vcrd/frame/vcard_data.h"

// The rest of the logical line, without the blanks at its head. Leaves the first byte of the next
// line pushed back.
void VcardPutValue(VcardData *data);

// The rest of the value as quoted-printable, to the first raw line end. Leaves the stream just
// behind that. In the summary it leaves `Encoding` at 2.
void VcardPutValueQp(VcardData *data);

// VcardPutValueQp when `encoding` is quoted-printable, otherwise VcardPutValue.
void VcardPutValueBy(int32_t encoding, VcardData *data);

// A value that only refers to its content. Kinds 1 (url) and 2 (content-id) are written under a
// label of their own, undecoded; others are left unread. Always answers 1.
int32_t VcardPutValueKind(VcardData *data);

// The rest of the logical line, byte by byte, under whatever set the host has.
void VcardPutPlainLine(VcardData *data);

// The labels of the line's types in parentheses, when it has any, and a line break.
void VcardPutTypes(const VcardData *data);

#endif

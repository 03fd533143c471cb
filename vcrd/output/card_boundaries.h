// Where one card ends and the next begins. There is no nesting: a section is the text from a BEGIN
// to the first END behind it.

#ifndef PX_VCRD_OUTPUT_CARD_BOUNDARIES_H
#define PX_VCRD_OUTPUT_CARD_BOUNDARIES_H

#include "vcrd/frame/vcard_data.h"

// Behind an END: searches the raw bytes for the next "begin:", in any case of letters and wherever
// it stands. Leaves the stream on its first letter, reports the end of the section and sets
// `Finished`; or sets `AtEof` when the input ends before.
void VcardFindNextCard(VcardData *data);

// Passes over the value of an AGENT line, and over the card that follows when the next line is its
// BEGIN.
void VcardSkipAgent(VcardData *data);

#endif

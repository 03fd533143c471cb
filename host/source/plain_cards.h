// Files that need no view: cards of version 2.1 that the filter reads whole as they stand.
//
// Most of what keeps a file from being one is named in the rules of plain_cards.cc: what the filter
// does otherwise than a person expects, and, since a wrong answer here would lose what the view
// keeps, whatever is unusual.

#ifndef PX_HOST_SOURCE_PLAIN_CARDS_H
#define PX_HOST_SOURCE_PLAIN_CARDS_H

#include "host/source/line_notes.h"
#include "px/vcard_io.h"

namespace px {

// Answers whether `file` holds plain cards alone, with the notes of all of them added; otherwise
// some may have been added. Throws as SourceView does.
bool readPlainCards(VcardIo *file, LineNotes *notes);

}  // namespace px

#endif

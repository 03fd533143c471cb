// Where a line goes on behind its end, and where it only seems to.
//
// Two breaks divide a line: a fold, which is a line end with a blank behind it, and the soft line
// break of quoted-printable, a "=" at the line's end. Damaged files have them in front of the next
// property: a value that ends with "=" all the same, an empty line that a tool has taken out, a
// card that somebody has indented. On the other hand a text may well have "TEL: 123" at the head of
// a line that goes on. Two things tell which it is.
//
// The reason for the break: writers break a line where the next word has no room in its 72 to 76
// columns, or behind an encoded line end. A break without a reason is a mistake. And the look of
// what follows: "NAME:" is perhaps a property, "NAME;TYPE=CELL:" surely is one, and so is a BEGIN
// or END that stands alone in its line. The name is one that the formats have, in capitals.
//
//                        perhaps     surely
//   with a reason        text        property, unless a soft break ends it again
//   without a reason     property    property
//
// How the value is encoded makes no difference to a fold, so that whoever passes over a value ends
// where its reader does.

#ifndef PX_HOST_SOURCE_LINE_BREAKS_H
#define PX_HOST_SOURCE_LINE_BREAKS_H

#include "host/source/byte_source.h"

namespace px {

enum class Behind {
  End,       // the line has ended
  More,      // it goes on
  Property,  // it would, but for a property that stands there
};

// What the line has had so far.
enum class Before {
  Text,
  EncodedLineEnd,  // at its very end
  Unfinished,      // something that no line ends with
};

// Takes the line ends that come next and the blank behind them, if there is one. Where the line
// doesn't go on, the next one comes, with or without that blank.
Behind takeFold(ByteSource *source, Before before);

// Takes the one line end that comes next, and belongs to a soft break. An empty line behind it
// isn't taken, and ends the value.
Behind takeSoftBreak(ByteSource *source, Before before);

}  // namespace px

#endif

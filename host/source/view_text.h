// The text that the filter is given, and how it says things so that the filter reads them whole.
//
// The view is written in the filter's simplest dialect: no folds, no backslash escapes, no named
// character set, all text UTF-8. What the dialect cannot say plainly goes as follows.
//
//   Text        as quoted-printable, where the filter decodes it: the properties that it knows. No
//               delimiter is left in it, so the pass that looks for the summary and takes the
//               values of names, numbers and addresses for heads of lines finds none there.
//   Fields      likewise, with their semicolons bare. That pass reads them as parameters; an empty
//               BEGIN line behind them, which writes nothing, ends their effect.
//   Plain text  for names that the filter doesn't know, since it never decodes those. A line end in
//               it is a fold followed by a line end: the filter delivers a blank and the line end.
//   Base64      its digits in one line that always ends in "=".

#ifndef PX_HOST_SOURCE_VIEW_TEXT_H
#define PX_HOST_SOURCE_VIEW_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>

#include "host/io/spool_file.h"

namespace px {

class ViewText {
 public:
  // `spool` isn't owned.
  explicit ViewText(SpoolFile *spool) : spool_(*spool) {}

  uint64_t size() const { return spool_.size(); }

  void put(std::string_view bytes) { spool_.append(bytes); }

  // `text` in the forms told above, without the line end behind it. It has LF for line ends.
  void putQuoted(std::string_view text);
  void putPlain(std::string_view text);

  // One of several fields. The first one's first byte is encoded, so that the field is not taken
  // for the name of a property.
  void putField(std::string_view field, bool first);

  // The line that takes away what fields may have set.
  void putAbsorber() { put("BEGIN:\n"); }

 private:
  SpoolFile &spool_;
};

// Undoes putQuoted and putField: appends the text of a whole value to `text`.
void appendUnquoted(std::string_view value, std::string *text);

}  // namespace px

#endif

// The bytes of a value: folds, soft line breaks and the quoted-printable encoding undone; of a
// Base64 value the digits, without the line ends and blanks between them.
//
// A Base64 value goes on over lines that begin with a blank, as any value does, and over lines of
// nothing but Base64 digits, up to its "=". Where any value ends at a break, line_breaks.h tells.

#ifndef PX_HOST_SOURCE_VALUE_BYTES_H
#define PX_HOST_SOURCE_VALUE_BYTES_H

#include <string>
#include <string_view>

#include "host/source/byte_source.h"
#include "host/source/content_lines.h"
#include "host/source/line_breaks.h"

namespace px {

enum class Transfer { Plain, QuotedPrintable, Base64 };

class ValueBytes {
 public:
  // `source` isn't owned and stands on the value's first byte. `protectSemicolons`: an encoded
  // semicolon comes out behind a backslash, since it is text and divides no fields.
  ValueBytes(ByteSource *source, Transfer transfer, FoldRule rule, bool protectSemicolons = false)
      : source_(source), transfer_(transfer), rule_(rule), protect_(protectSemicolons) {}

  // The next piece, valid until the next call; empty at the end of the value, where the source
  // stands on the next line.
  std::string_view next();

  // Whether there is no further piece; told at the latest by an empty one.
  bool ended() const { return ended_; }

  // Goes to the end of the value.
  void skip() {
    while (!next().empty()) {
    }
  }

  // Of the value's last line end, or of the end of the input; known at the end.
  const Place &end() const { return end_; }

  // Whether it ended at a property that seemed to be more of it.
  bool endsAtProperty() const { return atProperty_; }

 private:
  std::string_view nextPlain();
  std::string_view nextQuotedPrintable();
  std::string_view nextBase64();
  void takeEscape();
  bool goesOnBehind(Behind behind);
  void noteEscape(std::string_view piece);
  void putByte(int high, int low);
  bool endLine();
  bool goesOnInBase64();

  ByteSource *source_;
  Transfer transfer_;
  FoldRule rule_;
  bool protect_;
  bool ended_ = false;
  bool atLineEnd_ = false;  // the source is known to stand there
  bool atProperty_ = false;
  bool padded_ = false;  // a "=" has been met in Base64
  // What stands before the next byte, for line_breaks.h.
  Before before_ = Before::Text;
  char last_ = '\0';
  Place end_;
  std::string decoded_;
};

}  // namespace px

#endif

// What kind of file some content is, by its first bytes.

#ifndef PX_HOST_SAVING_CONTENT_TYPE_H
#define PX_HOST_SAVING_CONTENT_TYPE_H

#include <string_view>

namespace px {

struct ContentType {
  std::string_view mime;  // "application/octet-stream" when nothing fits
  // The kind's usual extensions with their dots and blanks between, the best one first.
  std::string_view extensions;
  // The bytes say little: any extension may be right, as for plain text.
  bool vague;
};

// Knows the kinds that people put into cards. `start` is the start of the content, of which a few
// kilobytes are looked at, whatever stands there.
ContentType guessContentType(std::string_view start);

}  // namespace px

#endif

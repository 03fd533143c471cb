// What kind of file some content is, by its first bytes.

#ifndef PX_HOST_CONTENT_TYPE_H
#define PX_HOST_CONTENT_TYPE_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct magic_set;

namespace px {

struct ContentType {
  std::string mime;  // "application/octet-stream" when nothing fits
  // The kind's usual extensions with their dots, the best one first. Never empty.
  std::vector<std::string> extensions;
  // The bytes say little: any extension may be right, as for plain text.
  bool vague = false;
};

// Not to be shared by threads.
class ContentTypeGuesser {
 public:
  // Without the system's data base of file types every content is "application/octet-stream".
  ContentTypeGuesser();

  // `bytes` is the start of the content: some kilobytes do.
  ContentType guess(const void *bytes, size_t size) const;

 private:
  struct Close {
    void operator()(magic_set *cookie) const;
  };
  std::unique_ptr<magic_set, Close> cookie_;
};

}  // namespace px

#endif

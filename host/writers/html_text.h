// The lowest layer of HTML: markup as it stands, and text made safe to stand in it.

#ifndef PX_HOST_WRITERS_HTML_TEXT_H
#define PX_HOST_WRITERS_HTML_TEXT_H

#include <string>
#include <string_view>
#include <utility>

#include "host/writers/text_sink.h"

namespace px {

// Appends valid UTF-8 as it can stand between tags and in a quoted attribute: markup is escaped,
// and U+FFFD stands for control characters other than tab and newline, for numbers that are no
// characters, and for what overrides the direction of writing.
void appendHtml(std::string_view utf8, std::string *to);

std::string asHtml(std::string_view utf8);

// Gives what is put to a sink, in pieces of bounded size.
class HtmlStream {
 public:
  explicit HtmlStream(TextSink sink) : sink_(std::move(sink)) {}

  void put(std::string_view markup) {
    held_ += markup;
    if (held_.size() >= MaxHeld) giveOut();
  }
  void putText(std::string_view utf8);

  // Gives all that was put to the sink.
  void giveOut();

 private:
  static constexpr size_t MaxHeld = 16 * 1024;

  TextSink sink_;
  std::string held_;
};

}  // namespace px

#endif

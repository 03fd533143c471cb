// The lowest layer of JSON: an output stream for the JSON writer, and strings that come in pieces.

#ifndef PX_HOST_WRITERS_JSON_TEXT_H
#define PX_HOST_WRITERS_JSON_TEXT_H

#include <string>
#include <string_view>

#include "host/writers/text_sink.h"

namespace px {

// Gives what is put to a sink, in pieces of bounded size. Has what a RapidJSON writer needs.
class JsonStream {
 public:
  using Ch = char;

  explicit JsonStream(TextSink sink) : sink_(std::move(sink)) {}

  void Put(char byte) {
    held_.push_back(byte);
    if (held_.size() >= MaxHeld) giveOut();
  }
  void Flush() {}  // called at the end of each section: no reason to give out yet

  void put(std::string_view bytes) {
    for (char byte : bytes) Put(byte);
  }

  // Puts valid UTF-8 as it stands within the quotes of a JSON string; `utf8` is cut between
  // characters. What drives a terminal or ends a line is escaped, so a string is one line for
  // every reader.
  void putEscaped(std::string_view utf8);

  // Gives all that was put to the sink.
  void giveOut();

 private:
  static constexpr size_t MaxHeld = 8192;

  TextSink sink_;
  std::string held_;
};

}  // namespace px

#endif

// JSON text, written value by value: objects, arrays, numbers, and strings that come in pieces.

#ifndef PX_HOST_WRITERS_JSON_TEXT_H
#define PX_HOST_WRITERS_JSON_TEXT_H

#include <rapidjson/writer.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/writers/text_sink.h"

namespace px {

// Gives what is put to a sink, in pieces of bounded size. Has what a RapidJSON writer needs.
class JsonStream {
 public:
  using Ch = char;

  explicit JsonStream(TextSink sink) : sink_(std::move(sink)) {}

  void Put(char byte) {
    held_[size_++] = byte;
    if (size_ == held_.size()) giveOut();
  }
  void Flush() {}  // called at the end of each text: no reason to give out yet

  void put(std::string_view bytes) {
    if (bytes.size() >= held_.size() - size_) return putLong(bytes);
    std::memcpy(held_.data() + size_, bytes.data(), bytes.size());
    size_ += bytes.size();
  }

  // Puts valid UTF-8 as it stands within the quotes of a JSON string; `utf8` is cut between
  // characters. What drives a terminal or ends a line is escaped, so a string is one line for
  // every reader.
  void putEscaped(std::string_view utf8);

  // Gives all that was put to the sink.
  void giveOut();

 private:
  void putLong(std::string_view bytes);

  TextSink sink_;
  std::array<char, 8192> held_{};
  size_t size_ = 0;
};

// RapidJSON's writer, which knows no strings in pieces: it is told of the value, whose text then
// goes to the stream.
class JsonStructure : public rapidjson::Writer<JsonStream> {
 public:
  using Writer::Writer;

  void beginString() { Prefix(rapidjson::kStringType); }
};

class JsonText {
 public:
  explicit JsonText(TextSink sink) : stream_(std::move(sink)) {}

  // Begins another text behind what was written, so the writer's state doesn't grow.
  void begin() { writer_.Reset(stream_); }
  // Adds what stands between texts.
  void between(std::string_view bytes) { stream_.put(bytes); }
  // Gives all that was written to the sink.
  void flush() { stream_.giveOut(); }

  void startObject() { writer_.StartObject(); }
  void endObject() { writer_.EndObject(); }
  void startArray() { writer_.StartArray(); }
  void endArray() { writer_.EndArray(); }

  // A key that has nothing to escape.
  void key(std::string_view name);
  void number(uint64_t number) { writer_.Uint64(number); }
  void string(std::string_view utf8);
  // A value whose JSON text begins with a quote, as it stands.
  void quoted(std::string_view json);

  // A string in pieces.
  void beginString() {
    writer_.beginString();
    stream_.Put('"');
  }
  void addToString(std::string_view utf8) { stream_.putEscaped(utf8); }
  void endString() { stream_.Put('"'); }

  void member(std::string_view name, std::string_view utf8);
  void member(std::string_view name, uint64_t value);
  void member(std::string_view name, const std::vector<std::string> &values);

 private:
  JsonStream stream_;
  JsonStructure writer_{stream_};
};

}  // namespace px

#endif

// Cards as JSON, an object a section: docs/json.md tells the keys.
//
//     JsonWriter json(JsonForm::Lines, contentTypeOf, sink);
//     for each file:
//       json.beginFile(name);
//       the events of its sections, or error
//     json.flush();
//
// All goes out as it comes: memory doesn't grow with a value, a card or a file. This takes the
// summary's lines in the order of SummaryKind, each kind together, as the reader gives them.

#ifndef PX_HOST_WRITERS_JSON_WRITER_H
#define PX_HOST_WRITERS_JSON_WRITER_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/reading/card_events.h"
#include "host/writers/json_text.h"
#include "host/writers/kept_heads.h"
#include "host/writers/object_content.h"

namespace px {

enum class JsonForm {
  Elements,  // of an array, with commas between; its brackets are the caller's
  Lines,     // a line for each section
};

class JsonWriter : public CardEvents {
 public:
  JsonWriter(JsonForm form, ContentTypeOf contentTypeOf, TextSink sink);

  // `name` is what the sections that follow are told to stand in, empty where nothing is; what
  // isn't UTF-8 in it becomes U+FFFD.
  void beginFile(std::string_view name);

  // Adds an object that tells that a file, or the rest of it, couldn't be read. A section that has
  // begun is closed before it. `message` is for a person.
  void error(std::string_view file, std::string_view message);

  // Gives all that was written to the sink. Behind a file's last section.
  void flush() { json_.flush(); }

  void beginSection(const Section &section) override;
  void beginSummaryLine(SummaryKind kind, bool completed) override;
  void endSummaryLine(const std::vector<std::string> &types) override;
  void beginProperty(const Property &property) override;
  void beginField(uint32_t label) override;
  void text(std::string_view utf8) override;
  void lineBreak() override;
  void object(const PlacedObject &object) override;
  void lateParameter(const Parameter &parameter) override;
  void endProperty() override;
  void endSection() override;

 private:
  enum class Place { Outside, Section, Summary, SummaryLine, Properties, Property };
  enum class Value { None, Text, Fields, Object };

  void beginObject();
  void endObject();
  void closeSection();
  void summaryText(std::string_view utf8);
  void moveToSummaryLine();
  void endSummaryKind();
  void openProperties();
  void beginString();
  void endString();
  void member(const std::optional<Extent> &extent);

  const JsonForm form_;
  const ContentTypeOf contentTypeOf_;
  JsonText json_;
  std::string file_;
  bool any_ = false;  // an object has been written
  Place place_ = Place::Outside;
  bool inString_ = false;

  std::optional<SummaryKind> kind_;  // whose key is open
  SummaryKind lineKind_ = SummaryKind::Entry;
  bool lineWritten_ = false;  // in part
  uint32_t breaks_ = 0;       // line ends that wait for text behind them
  bool divided_ = false;      // an empty line of the address waits likewise

  KeptHeads<std::string> heads_;  // as JSON, from the name's value to the parameters
  Value value_ = Value::None;
  std::optional<Extent> extent_;  // of the property
  bool takesLate_ = false;
  std::vector<Parameter> late_;  // written at the property's end
};

}  // namespace px

#endif

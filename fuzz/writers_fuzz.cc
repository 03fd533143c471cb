// The writers: whatever the file holds, what they write is valid UTF-8 without control characters,
// and what is to be parsed parses. To add a writer, add a check at the end.

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <stdexcept>
#include <string>

#include "fuzz/fuzz_target.h"
#include "host/reading/file_reading.h"
#include "host/saving/content_type.h"
#include "host/writers/file_text.h"
#include "host/writers/json_writer.h"

namespace px::fuzz {
namespace {

std::string typeOf(const void *bytes, size_t size) {
  return std::string(guessContentType({static_cast<const char *>(bytes), size}).mime);
}

// A file to be written, read the same way by each writer.
struct File {
  std::string_view text;
  Reading reading;

  // Answers false when it is no card.
  bool readInto(CardEvents *events) const {
    MemoryIo io(text);
    try {
      readFile(filterLibrary(), &io, reading, [](uint64_t, const std::string &) {}, events);
    } catch (const std::runtime_error &) {
      return false;
    }
    return true;
  }
};

bool isText(const rapidjson::Value &object, const char *key) {
  const auto member = object.FindMember(key);
  return member != object.MemberEnd() && member->value.IsString();
}

// The keys that are always there.
void requireSection(const rapidjson::Value &section) {
  require(section.IsObject() && isText(section, "file"), "an object for each section");
  if (isText(section, "error")) return;
  require(isText(section, "format"), "a section has a format");
  const auto properties = section.FindMember("properties");
  require(properties != section.MemberEnd() && properties->value.IsArray(), "and properties");
  for (const auto &property : properties->value.GetArray()) {
    require(property.IsObject(), "a property is an object");
    require(property.HasMember("value") != property.HasMember("object"), "with one kind of value");
  }
}

rapidjson::Document parsed(std::string_view json) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(
      json.data(), json.size());
  require(!document.HasParseError(), "JSON that parses");
  return document;
}

void checkJson(const File &file, JsonForm form) {
  std::string json;
  JsonWriter writer(form, typeOf, [&json](std::string_view piece) { json += piece; });
  writer.begin();
  writer.beginFile(file.text.substr(0, file.text.find('\n')));
  if (!file.readInto(&writer)) writer.error("name", file.text);
  writer.end();
  require(isCleanText(json), "JSON is clean UTF-8");
  if (form == JsonForm::Array) {
    const rapidjson::Document document = parsed(json);
    require(document.IsArray(), "an array");
    for (const auto &section : document.GetArray()) requireSection(section);
    return;
  }
  require(json.ends_with('\n'), "whole lines");
  for (std::string_view rest = json; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1)) {
    requireSection(parsed(rest.substr(0, rest.find('\n'))));
  }
}

void checkText(const File &file, const TextLook &look) {
  std::string text;
  FileText writer(look, typeOf, [&text](std::string_view piece) { text += piece; });
  file.readInto(&writer);
  writer.finish();
  if (look.color) {
    size_t at;
    while ((at = text.find("\x1B[")) != text.npos) {
      const size_t end = text.find_first_not_of("0123456789;", at + 2);
      require(end != text.npos && text[end] == 'm', "a colour ends");
      text.erase(at, end + 1 - at);
    }
  }
  require(isCleanText(text), "text is clean UTF-8");
}

}  // namespace
}  // namespace px::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  using namespace px;
  using namespace px::fuzz;
  const std::string_view text = textOf(data, size);
  Choices choices(text);
  const File file{text, choices.yes() ? Reading::Viewed : Reading::Raw};
  checkJson(file, choices.yes() ? JsonForm::Array : JsonForm::Lines);
  TextLook look;
  look.width = 1 + choices.below(200);
  look.color = choices.yes();
  checkText(file, look);
  return 0;
}

// The writers: whatever the file holds, what they write is valid UTF-8 without control characters,
// and what is to be parsed parses. To add a writer, add a check at the end.

#include <rapidjson/document.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "host/reading/file_reading.h"
#include "host/saving/content_type.h"
#include "host/writers/file_text.h"
#include "host/writers/html_writer.h"
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
      readFile(
          filterLibrary(), &io, reading, [](uint64_t, const std::string &) {}, events);
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
  writer.beginFile(file.text.substr(0, file.text.find('\n')));
  if (!file.readInto(&writer)) writer.error("name", file.text);
  writer.flush();
  require(isCleanText(json), "JSON is clean UTF-8");
  if (form == JsonForm::Elements) {
    const rapidjson::Document document = parsed("[" + json + "]");
    require(document.IsArray(), "an array");
    for (const auto &section : document.GetArray()) requireSection(section);
    return;
  }
  require(json.ends_with('\n'), "whole lines");
  for (std::string_view rest = json; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1)) {
    requireSection(parsed(rest.substr(0, rest.find('\n'))));
  }
}

// Takes an attribute, `name` or `name="value"`, and the blank before it. Its name goes to `name`.
bool takeAttribute(std::string_view *tag, std::string_view *name) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz-";
  if (!tag->starts_with(' ')) return false;
  tag->remove_prefix(1);
  *name = tag->substr(0, tag->find_first_not_of(letters));
  tag->remove_prefix(name->size());
  if (!tag->starts_with("=\"")) return !name->empty();
  const size_t end = tag->find('"', 2);
  if (name->empty() || end == tag->npos) return false;
  const std::string_view value = tag->substr(2, end - 2);
  const bool isLink = *name == "href" || *name == "src";
  require(!isLink || !value.starts_with("javascript:"), "no link is a script");
  tag->remove_prefix(end + 1);
  return true;
}

// Requires that text between tags, and in attributes, has its special characters escaped.
void requireEscaped(std::string_view text) {
  require(text.find_first_of("<>") == text.npos, "no byte of the file is markup");
  for (size_t at = 0; (at = text.find('&', at)) != text.npos; ++at) {
    const std::string_view entity = text.substr(at, text.find(';', at) + 1 - at);
    require(entity == "&amp;" || entity == "&lt;" || entity == "&gt;" || entity == "&quot;" ||
                entity == "&#39;" || entity == "&nbsp;",
            "an ampersand begins an entity");
  }
}

// Requires tags of the page's own alone, each closed in its order. The style and the script are the
// page's and not looked into.
void requirePage(std::string_view html) {
  constexpr std::string_view start = "<!DOCTYPE html>\n";
  require(html.starts_with(start), "a page");
  html.remove_prefix(start.size());
  std::vector<std::string_view> open;
  while (!html.empty()) {
    const size_t text = std::min(html.find('<'), html.size());
    requireEscaped(html.substr(0, text));
    html.remove_prefix(text);
    if (html.empty()) break;
    const size_t end = html.find('>');
    require(end != html.npos, "a tag ends");
    std::string_view tag = html.substr(1, end - 1);
    html.remove_prefix(end + 1);
    if (tag.starts_with('/')) {
      require(!open.empty() && tag.substr(1) == open.back(), "the tag that was opened is closed");
      open.pop_back();
      continue;
    }
    const std::string_view name = tag.substr(0, tag.find(' '));
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz123456";
    require(!name.empty() && name.find_first_not_of(letters) == name.npos, "a tag has a name");
    tag.remove_prefix(name.size());
    requireEscaped(tag);
    std::string_view attribute;
    while (!tag.empty()) {
      require(takeAttribute(&tag, &attribute), "an attribute");
      require(!attribute.starts_with("on"), "no attribute is a script");
    }
    const bool isVoid = name == "meta" || name == "br" || name == "input" || name == "img" ||
                        name == "wbr" || name == "hr" || name == "link";
    if (!isVoid) open.push_back(name);
    if (name == "style" || name == "script") {
      html.remove_prefix(std::min(html.find("</"), html.size()));
    }
  }
  require(open.empty(), "all tags are closed");
}

void checkHtml(const File &file, bool several) {
  std::string html;
  HtmlWriter writer(typeOf, [&html](std::string_view piece) { html += piece; });
  // Names and messages are UTF-8, and clean only when they are shown.
  const std::string name = "<b>&\"'";
  writer.begin(name, several);
  for (int i = 0; i < (several ? 2 : 1); ++i) {
    writer.beginFile(name);
    if (!file.readInto(&writer)) writer.error(name, name);
  }
  writer.end();
  std::erase(html, '\t');
  require(isCleanText(html), "the page is clean UTF-8");
  requirePage(html);
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
  checkJson(file, choices.yes() ? JsonForm::Elements : JsonForm::Lines);
  checkHtml(file, choices.yes());
  TextLook look;
  look.width = 1 + choices.below(200);
  look.color = choices.yes();
  checkText(file, look);
  return 0;
}

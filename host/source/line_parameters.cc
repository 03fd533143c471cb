#include "host/source/line_parameters.h"

#include <algorithm>
#include <iterator>

#include "host/source/ascii_case.h"
#include "host/source/byte_search.h"
#include "host/source/property_table.h"

namespace px {
namespace {

std::string_view trimmed(std::string_view text) {
  const size_t from = text.find_first_not_of(" \t");
  if (from == text.npos) return {};
  return text.substr(from, text.find_last_not_of(" \t") + 1 - from);
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> names) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view name) { return equalsNoCase(text, name); });
}

// What a parameter without a name is.
std::string_view nameOfBare(std::string_view text) {
  if (isOneOf(text, {"7BIT", "8BIT", "QUOTED-PRINTABLE", "BASE64", "UTF-8"})) return "ENCODING";
  if (isOneOf(text, {"INLINE", "URL", "CONTENT-ID", "CID", "BINARY"})) return "VALUE";
  return "TYPE";
}

std::string withoutCarets(std::string_view text) {
  std::string result;
  for (size_t at = 0; at < text.size(); ++at) {
    const char next = at + 1 < text.size() ? text[at + 1] : '\0';
    const char meant = text[at] != '^' ? '\0'
                       : next == 'n'   ? '\n'
                       : next == '\''  ? '"'
                       : next == '^'   ? '^'
                                       : '\0';
    if (meant != '\0') ++at;
    result += meant != '\0' ? meant : text[at];
  }
  return result;
}

// A text for several lines, as in ADR;LABEL. Some writers escape the escape as well.
std::string withoutEscapes(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const size_t escape = std::min(text.find('\\'), text.size());
    result.append(text, 0, escape);
    text.remove_prefix(escape);
    const size_t behind = std::min(text.find_first_not_of('\\'), text.size());
    const char next = behind > 0 && behind < text.size() ? text[behind] : '\0';
    if (next == 'n' || next == 'N') {
      result += '\n';
      text.remove_prefix(behind + 1);
    } else if (next == ',' || next == ';') {
      text.remove_prefix(behind);
    } else {
      result.append(text, 0, behind);
      text.remove_prefix(behind);
    }
  }
  return result;
}

enum class Content {
  Text,
  Type,
  Address,  // one text, which can have several lines
};

Content contentOf(std::string_view name) {
  if (name == "TYPE") return Content::Type;
  const bool isAddress = name == "LABEL" || name == "X-ADDRESS" || name == "X-TITLE";
  return isAddress ? Content::Address : Content::Text;
}

// What a value means, whose quotes are taken away.
std::string meaningOf(std::string_view text, Content content, const VersionRules &rules) {
  constexpr std::string_view doubled = "TYPE=";  // as in TYPE=HOME,TYPE=VOICE
  text = trimmed(text);
  if (content == Content::Type && equalsNoCase(text.substr(0, doubled.size()), doubled)) {
    text.remove_prefix(doubled.size());
  }
  std::string value = rules.caretEscapes ? withoutCarets(text) : std::string(text);
  return rules.escapes && content == Content::Address ? withoutEscapes(value) : value;
}

// Adds the values of a list: divided by commas outside of quotes, and the quotes taken away, closed
// or not. A quoted list of types is a list all the same. Versions without escapes have no lists but
// those of types, and their quotes are text within a value.
void addValues(std::string_view text, const VersionRules &rules, Parameter *parameter) {
  const Content content = contentOf(parameter->name);
  const auto add = [&](std::string_view value) {
    parameter->values.push_back(meaningOf(value, content, rules));
  };
  text = trimmed(text);
  if (!rules.escapes && content != Content::Type) {
    if (text.starts_with('"')) text.remove_prefix(1);
    if (text.ends_with('"')) text.remove_suffix(1);
    return add(text);
  }
  std::string value;
  bool quoted = false;
  for (const char c : text) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && content != Content::Address && (!quoted || content == Content::Type)) {
      add(value);
      value.clear();
    } else {
      value += c;
    }
  }
  add(value);
}

}  // namespace

bool isParameterWord(std::string_view word) {
  return knownType(word) >= 0 || nameOfBare(word) != "TYPE";
}

VersionRules rulesOf(std::string_view version, bool calendar) {
  version = trimmed(version);
  VersionRules rules;
  const bool early =
      calendar ? version.starts_with('1') : !version.starts_with('3') && !version.starts_with('4');
  rules.escapes = !early || version.empty();
  rules.caretEscapes = calendar ? !early : version.starts_with('4');
  rules.fold = early ? FoldRule::KeepsBlank : FoldRule::DropsBlank;
  return rules;
}

Transfer transferOf(const std::vector<HeadParameter> &parameters) {
  Transfer transfer = Transfer::Plain;
  for (const HeadParameter &parameter : parameters) {
    const std::string_view value = trimmed(parameter.value);
    const bool named = equalsNoCase(trimmed(parameter.name), "ENCODING");
    if (!named && !parameter.name.empty()) continue;
    if (isOneOf(value, {"QUOTED-PRINTABLE", "\"QUOTED-PRINTABLE\""})) {
      transfer = Transfer::QuotedPrintable;
    } else if (isOneOf(value, {"BASE64", "\"BASE64\""}) ||
               (named && isOneOf(value, {"B", "\"B\""}))) {
      transfer = Transfer::Base64;
    }
  }
  return transfer;
}

Transfer transferOf(const ContentLine &line) {
  // Every encoding has a B in its names.
  const auto isB = [](ByteVector b) { return isByte(b, 'B') | isByte(b, 'b'); };
  if (lengthBefore(line.parameters, isB) == line.parameters.size()) return Transfer::Plain;
  std::vector<HeadParameter> parameters;
  splitParameters(line.parameters, ContentLines::MostParameters, &parameters);
  return transferOf(parameters);
}

std::vector<Parameter> parametersOf(const std::vector<HeadParameter> &parameters,
                                    const VersionRules &rules) {
  std::vector<Parameter> result;
  for (const HeadParameter &given : parameters) {
    std::string name = inCapitals(trimmed(given.name));
    if (name.empty()) {
      if (trimmed(given.value).empty()) continue;  // as in ";;" or ";:"
      name = nameOfBare(trimmed(given.value));
    }
    auto same = std::find_if(result.begin(), result.end(),
                             [&](const Parameter &earlier) { return earlier.name == name; });
    if (same == result.end()) {
      result.push_back({std::move(name), {}});
      same = std::prev(result.end());
    }
    addValues(given.value, rules, &*same);
  }
  return result;
}

const std::string *valueOf(const std::vector<Parameter> &parameters, std::string_view name) {
  for (const Parameter &parameter : parameters) {
    if (parameter.name == name && !parameter.values.empty()) return &parameter.values.front();
  }
  return nullptr;
}

}  // namespace px

#include "host/source/line_parameters.h"

#include <algorithm>
#include <iterator>

#include "host/source/ascii_case.h"
#include "host/source/byte_search.h"

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

// Adds the values of a list: divided by commas outside of quotes, and the quotes taken away. A
// quoted list of types is a list all the same.
void addValues(std::string_view text, bool isType, const VersionRules &rules,
               Parameter *parameter) {
  const bool guard = std::count(text.begin(), text.end(), '"') % 2 == 0;
  std::string value;
  bool quoted = false;
  const auto end = [&] {
    const std::string_view cut = trimmed(value);
    parameter->values.push_back(rules.caretEscapes ? withoutCarets(cut) : std::string(cut));
    value.clear();
  };
  for (const char c : text) {
    if (c == '"' && guard) {
      quoted = !quoted;
    } else if (c == ',' && (!quoted || isType)) {
      end();
    } else {
      value += c;
    }
  }
  end();
}

}  // namespace

VersionRules rulesOf(std::string_view version, bool calendar) {
  version = trimmed(version);
  VersionRules rules;
  const bool early =
      calendar ? version.starts_with('1') : !version.starts_with('3') && !version.starts_with('4');
  if (!early) {
    rules.escapes = true;
    rules.fold = FoldRule::DropsBlank;
    rules.caretEscapes = calendar || version.starts_with('4');
  }
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
    const bool isType = same->name == "TYPE";
    if (rules.escapes || isType) {
      addValues(given.value, isType, rules, &*same);
    } else {
      same->values.emplace_back(trimmed(given.value));
    }
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

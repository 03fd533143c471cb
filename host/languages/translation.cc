#include "host/languages/translation.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "host/io/beside_program.h"
#include "host/languages/catalogue.h"

namespace px {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEnglish = "en";

struct Speech {
  std::string language{kEnglish};
  Catalogue catalogue;
};

Speech &speech() {
  static Speech one;
  return one;
}

fs::path localeFolder() { return besideProgram("share/locale"); }

Catalogue readCatalogue(const std::string &code) {
  std::ifstream file(localeFolder() / code / "LC_MESSAGES" / "pxcard.mo", std::ios::binary);
  return Catalogue({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
}

// A code is the name of a folder.
bool isCode(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z') || c == '_';
  });
}

std::string_view variable(const char *name) {
  const char *value = std::getenv(name);
  return value ? value : "";
}

}  // namespace

bool useLanguage(std::string_view code) {
  code = code.substr(0, code.find_first_of(".@"));  // de_AT.UTF-8@euro
  if (!isCode(code)) return false;
  const std::string_view general = code.substr(0, code.find('_'));
  for (const std::string_view each : {code, general}) {
    const std::string name(each);
    Catalogue catalogue = readCatalogue(name);
    if (catalogue.isEmpty() && each != kEnglish) continue;
    speech() = {name, std::move(catalogue)};
    return true;
  }
  return false;
}

// As the C library chooses: the locale says whether there is a choice, LANGUAGE lists what the user
// would read.
void useLanguageOfEnvironment() {
  std::string_view locale;
  for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (locale.empty()) locale = variable(name);
  }
  if (locale.empty() || locale == "C" || locale == "POSIX") return;
  std::string list(variable("LANGUAGE"));
  list.append(":").append(locale);
  for (std::string_view rest = list; !rest.empty();) {
    const size_t end = std::min(rest.find(':'), rest.size());
    if (useLanguage(rest.substr(0, end))) return;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

std::vector<std::string> knownLanguages() {
  std::vector<std::string> codes{std::string(kEnglish)};
  std::error_code none;
  for (const auto &entry : fs::directory_iterator(localeFolder(), none)) {
    if (fs::exists(entry.path() / "LC_MESSAGES" / "pxcard.mo", none)) {
      codes.push_back(entry.path().filename().string());
    }
  }
  std::sort(codes.begin(), codes.end());
  return codes;
}

const std::string &language() { return speech().language; }

std::string_view tr(std::string_view text) {
  const Catalogue &catalogue = speech().catalogue;
  if (catalogue.isEmpty() || text.empty()) return text;  // the empty text's entry is the head
  const std::string_view translation = catalogue.find(text);
  return translation.empty() ? text : translation;
}

std::string_view trIn(std::string_view context, std::string_view text) {
  const Catalogue &catalogue = speech().catalogue;
  if (catalogue.isEmpty()) return text;
  const std::string_view translation =
      catalogue.find(std::string(context).append("\4").append(text));
  return translation.empty() ? text : translation;
}

std::string filled(std::string_view text, std::initializer_list<std::string_view> values) {
  std::string result;
  for (size_t at = 0; at < text.size(); ++at) {
    const size_t number = at + 1 < text.size() ? static_cast<size_t>(text[at + 1] - '1') : 9;
    if (text[at] == '%' && number < values.size()) {
      result += values.begin()[number];
      ++at;
    } else {
      result += text[at];
    }
  }
  return result;
}

}  // namespace px

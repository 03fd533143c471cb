#include "host/languages/translation.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>

#include "host/io/beside_program.h"
#include "host/languages/catalogue.h"

namespace px {

struct Language {
  std::string code;
  Catalogue catalogue;
};

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEnglish = "en";

// They lie in the tree that this stands in: beside bin/ and lib/, or where lib/ has folders for
// machines, one further up.
fs::path localeFolder() {
  const fs::path locale = "share/locale";
  std::error_code none;
  fs::path folder = ownFile().parent_path();
  for (int i = 0; i < 2 && folder.has_relative_path(); ++i) {
    folder = folder.parent_path();
    if (fs::is_directory(folder / locale, none)) return folder / locale;
  }
  return besideProgram(locale);
}

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

const Language &english() {
  static const Language one{std::string(kEnglish), {}};
  return one;
}

const Language *chosen = nullptr;
thread_local const Language *ofThread = nullptr;

const Language &spoken() { return ofThread ? *ofThread : chosen ? *chosen : english(); }

// The language of just this code.
const Language *readLanguage(const std::string &code) {
  static std::mutex mutex;
  static std::map<std::string, Language> known;
  const std::lock_guard<std::mutex> lock(mutex);
  if (const auto found = known.find(code); found != known.end()) return &found->second;
  Catalogue catalogue = readCatalogue(code);
  if (catalogue.isEmpty()) return code == kEnglish ? &english() : nullptr;
  return &known.emplace(code, Language{code, std::move(catalogue)}).first->second;
}

}  // namespace

const Language *findLanguage(std::string_view code) {
  std::string name(code.substr(0, code.find_first_of(".@")));  // de_AT.UTF-8@euro
  std::replace(name.begin(), name.end(), '-', '_');
  if (!isCode(name)) return nullptr;
  const Language *language = readLanguage(name);
  return language ? language : readLanguage(name.substr(0, name.find('_')));
}

bool useLanguage(std::string_view code) {
  const Language *language = findLanguage(code);
  if (language) chosen = language;
  return language != nullptr;
}

LanguageOfThread::LanguageOfThread(const Language *language)
    : before_(std::exchange(ofThread, language)) {}

LanguageOfThread::~LanguageOfThread() { ofThread = before_; }

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

const std::string &language() { return spoken().code; }

std::string_view tr(std::string_view text) {
  const Catalogue &catalogue = spoken().catalogue;
  if (catalogue.isEmpty() || text.empty()) return text;  // the empty text's entry is the head
  const std::string_view translation = catalogue.find(text);
  return translation.empty() ? text : translation;
}

std::string_view trIn(std::string_view context, std::string_view text) {
  const Catalogue &catalogue = spoken().catalogue;
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

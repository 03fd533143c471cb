#include "host/command/options.h"

#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "host/command/object_choice.h"
#include "host/command/option_table.h"
#include "host/command/suggestion.h"
#include "host/command/whole_number.h"
#include "host/languages/translation.h"
#include "host/saving/name_pattern.h"

namespace px {
namespace {

constexpr uint32_t kMostJobs = 256;
constexpr uint32_t kMostColumns = 100000;

[[noreturn]] void wrong(std::string_view text, std::initializer_list<std::string_view> values) {
  throw UsageError(filled(tr(text), values));
}

// Tells what may have been meant.
[[noreturn]] void suggest(const std::string &text, const std::string &meant) {
  throw UsageError(meant.empty() ? text : filled(tr("%1; did you mean %2?"), {text, meant}));
}

[[noreturn]] void refuseValue(std::string_view option, std::string_view value,
                              const std::vector<std::string> &known) {
  std::string list;
  for (const std::string &one : known) list.append(list.empty() ? "" : ", ").append(one);
  const std::optional<size_t> near = nearest(value, known);
  suggest(filled(tr("unknown value %2 for %1; known: %3"), {option, value, list}),
          near ? known[*near] : "");
}

template <class T>
using Names = std::initializer_list<std::pair<std::string_view, T>>;

template <class T>
T valueNamed(std::string_view option, std::string_view name, Names<T> names) {
  std::vector<std::string> known;
  for (const auto &[one, value] : names) {
    if (name == one) return value;
    known.emplace_back(one);
  }
  refuseValue(option, name, known);
}

uint32_t numberOf(std::string_view option, std::string_view text, uint32_t least, uint32_t most) {
  const std::optional<uint32_t> number = wholeNumber(text);
  if (number && *number >= least && *number <= most) return *number;
  wrong(N_("%1 needs a number from %2 to %3"),
        {option, std::to_string(least), std::to_string(most)});
}

uint32_t objectOf(std::string_view text) {
  if (text == "photo") return ObjectChoice::Picture;
  const uint32_t number = wholeNumber(text).value_or(0);
  if (number == 0) refuseValue("--object", text, {"N", "photo"});
  return number;
}

void chooseLanguage(const std::string &code) {
  if (useLanguage(code)) return;
  useLanguageOfEnvironment();
  refuseValue("--lang", code, knownLanguages());
}

// Tables in the form that getopt_long takes.
struct Getopt {
  std::string letters = ":";  // a missing value is told from an unknown option
  std::vector<option> rows;

  Getopt() {
    for (const OptionRow &row : optionTable()) {
      rows.push_back({row.name, row.value ? required_argument : no_argument, nullptr, row.id});
      if (row.isShort()) letters.append(1, static_cast<char>(row.id)).append(row.value ? ":" : "");
    }
    rows.push_back({});
  }
};

const OptionRow *rowOf(int id) {
  const auto table = optionTable();
  const auto found =
      std::find_if(table.begin(), table.end(), [id](const OptionRow &row) { return row.id == id; });
  return found != table.end() ? &*found : nullptr;
}

// What getopt_long has refused: `id` is the option, 0 for a long one that isn't known, which is
// `argument` then.
[[noreturn]] void refuse(bool lacksValue, int id, std::string_view argument) {
  const OptionRow *row = rowOf(id);
  const std::string name = row       ? std::string("--") + row->name
                           : id != 0 ? std::string("-") + static_cast<char>(id)
                                     : std::string(argument.substr(0, argument.find('=')));
  if (lacksValue) wrong(N_("%1 needs a value"), {name});
  if (row) wrong(N_("%1 takes no value"), {name});
  if (name == "-v" || name == "--verbose") {
    wrong(N_("there is no %1: faults are told without it, all of them by --check, none with -q"),
          {name});
  }
  suggest(filled(tr("unknown option %1"), {name}), id != 0 ? "" : suggestedOption(name.substr(2)));
}

void take(int id, const char *value, Options *options) {
  switch (id) {
    case OptionFormat:
      options->task = valueNamed<Task>("--format", value,
                                       {{"text", Task::Text},
                                        {"html", Task::Html},
                                        {"json", Task::Json},
                                        {"jsonl", Task::JsonLines},
                                        {"trace", Task::Trace}});
      break;
    case OptionExtract:
      options->directory = value;
      if (options->directory.empty()) wrong(N_("%1 needs a value"), {"--extract"});
      break;
    case OptionObject:
      options->object = objectOf(value);
      break;
    case OptionName:
      options->namePattern = value;
      if (const std::string fault = namePatternFault(value); !fault.empty()) {
        throw UsageError("--name: " + fault);
      }
      break;
    case OptionRecursive:
      options->recursive = true;
      break;
    case OptionFiles0From:
      options->files0From = value;
      if (options->files0From.empty()) wrong(N_("%1 needs a value"), {"--files0-from"});
      break;
    case OptionOutput:
      options->output = value;
      if (options->output.empty()) wrong(N_("%1 needs a value"), {"--output"});
      break;
    case OptionQuiet:
      options->quiet = true;
      break;
    case OptionJobs:
      options->jobs = numberOf("--jobs", value, 1, kMostJobs);
      break;
    case OptionRaw:
      options->raw = true;
      break;
    case OptionNoLimit:
      options->noLimit = true;
      break;
    case OptionTolerant:
      options->tolerant = true;
      break;
    case OptionWidth:
      options->width = numberOf("--width", value, 0, kMostColumns);
      break;
    case OptionColor:
      options->color = valueNamed<Color>(
          "--color", value,
          {{"auto", Color::Auto}, {"always", Color::Always}, {"never", Color::Never}});
      break;
    case OptionCompletion:
      options->question = Question::Completion;
      options->shell = valueNamed<const char *>(
          "--completion", value, {{"bash", "bash"}, {"zsh", "zsh"}, {"fish", "fish"}});
      break;
    case OptionHelp:
      options->question = Question::Help;
      break;
    case OptionVersion:
      options->question = Question::Version;
      break;
    default:
      break;
  }
}

// Options and files may be mixed.
template <class Each>
void forEachOption(int argc, char **argv, Each each) {
  const Getopt table;
  optind = 0;  // from the start, whatever was parsed before
  opterr = 0;
  int id;
  while ((id = getopt_long(argc, argv, table.letters.c_str(), table.rows.data(), nullptr)) != -1) {
    each(id);
  }
}

void checkTogether(const Options &options, const std::vector<int> &given) {
  const auto has = [&](int id) { return std::count(given.begin(), given.end(), id) > 0; };
  const auto exclude = [&](int a, std::string_view nameA, int b, std::string_view nameB) {
    if (has(a) && has(b)) wrong(N_("%1 and %2 exclude each other"), {nameA, nameB});
  };
  exclude(OptionFormat, "--format", OptionExtract, "--extract");
  exclude(OptionFormat, "--format", OptionCheck, "--check");
  exclude(OptionCheck, "--check", OptionExtract, "--extract");
  exclude(OptionCheck, "--check", OptionOutput, "--output");
  const bool extractsOne = options.task == Task::ExtractOne;
  if (has(OptionName) && !has(OptionExtract))
    wrong(N_("%1 goes with %2 only"), {"--name", "--extract"});
  if (has(OptionName) && extractsOne)
    wrong(N_("%1 and %2 exclude each other"), {"--name", "--extract -"});
  if (has(OptionObject) && !extractsOne)
    wrong(N_("%1 goes with %2 only"), {"--object", "--extract -"});
  if (extractsOne && options.output.empty() && isatty(STDOUT_FILENO) == 1)
    wrong(N_("an object isn't written to a terminal; %1 writes it to a file"), {"--output"});
  if (!options.files0From.empty() && !options.files.empty()) {
    wrong(N_("with --files0-from no file can be an argument"), {});
  }
}

}  // namespace

Options parseOptions(int argc, char **argv) {
  // The language goes first: what is said of the others is in it.
  const char *code = nullptr;
  forEachOption(argc, argv, [&](int id) {
    if (id == OptionLang) code = optarg;
  });
  if (code) {
    chooseLanguage(code);
  } else {
    useLanguageOfEnvironment();
  }

  Options options;
  std::vector<int> given;
  forEachOption(argc, argv, [&](int id) {
    if (id == '?' || id == ':') refuse(id == ':', optopt, argv[optind - 1]);
    take(id, optarg ? optarg : "", &options);
    given.push_back(id);
  });
  options.files.assign(argv + optind, argv + argc);
  if (options.question != Question::None) return options;

  for (const int id : given) {
    if (id == OptionCheck) options.task = Task::Check;
    if (id == OptionExtract) options.task = Task::Extract;
  }
  if (options.directory == "-") {
    options.directory.clear();
    options.task = Task::ExtractOne;
  }
  checkTogether(options, given);
  if (options.files.empty() && options.files0From.empty()) {
    if (isatty(STDIN_FILENO) == 1) throw UsageError(std::string(tr("no file is given")));
    options.files.emplace_back("-");
  }
  return options;
}

}  // namespace px

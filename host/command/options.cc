#include "host/command/options.h"

#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "host/command/option_table.h"
#include "host/languages/translation.h"
#include "host/saving/name_pattern.h"

namespace px {
namespace {

constexpr uint32_t kMostJobs = 256;

[[noreturn]] void wrong(std::string_view text, std::initializer_list<std::string_view> values) {
  throw UsageError(filled(tr(text), values));
}

template <class T>
using Names = std::initializer_list<std::pair<std::string_view, T>>;

template <class T>
T valueNamed(std::string_view option, std::string_view name, Names<T> names) {
  std::string list;
  for (const auto &[known, value] : names) {
    if (name == known) return value;
    list.append(list.empty() ? "" : ", ").append(known);
  }
  wrong(N_("unknown value %2 for %1; known: %3"), {option, name, list});
}

uint32_t jobsOf(std::string_view text) {
  uint32_t jobs = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  if (!whole || jobs < 1 || jobs > kMostJobs) {
    wrong(N_("--jobs needs a number from 1 to %1"), {std::to_string(kMostJobs)});
  }
  return jobs;
}

void chooseLanguage(const std::string &code) {
  if (useLanguage(code)) return;
  useLanguageOfEnvironment();
  std::string list;
  for (const std::string &known : knownLanguages()) {
    list.append(list.empty() ? "" : ", ").append(known);
  }
  wrong(N_("unknown value %2 for %1; known: %3"), {"--lang", code, list});
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
                                     : std::string(argument);
  wrong(lacksValue ? N_("%1 needs a value")
        : row      ? N_("%1 takes no value")
                   : N_("unknown option %1"),
        {name});
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
      options->jobs = jobsOf(value);
      break;
    case OptionRaw:
      options->raw = true;
      break;
    case OptionNoLimit:
      options->noLimit = true;
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
  if (has(OptionName) && !has(OptionExtract))
    wrong(N_("%1 goes with %2 only"), {"--name", "--extract"});
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
  checkTogether(options, given);
  if (options.files.empty() && options.files0From.empty()) {
    if (isatty(STDIN_FILENO) == 1) throw UsageError(std::string(tr("no file is given")));
    options.files.emplace_back("-");
  }
  return options;
}

}  // namespace px

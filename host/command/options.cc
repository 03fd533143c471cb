#include "host/command/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "host/filter/filter_library.h"

namespace px {
namespace {

constexpr const char *kFooter =
    "Formats: text, json (one array), jsonl (a line for each card), trace (the filter's calls).\n"
    "\n"
    "--extract writes a line for each object that is saved: its name in DIR, type, size in bytes,\n"
    "file and card, with tabs between.\n"
    "\n"
    "Exit codes:\n"
    "  0  all went well\n"
    "  1  a file, or something in it, could not be read; an object could not be saved; or "
    "standard\n"
    "     output could not be written. All that could be read is shown.\n"
    "  2  wrong use of the command";

template <class T>
using Names = std::initializer_list<std::pair<std::string_view, T>>;

template <class T>
T valueNamed(const std::string &name, std::string_view what, Names<T> names) {
  for (const auto &[known, value] : names) {
    if (name == known) return value;
  }
  throw UsageError("unknown " + std::string(what) + " " + name);
}

}  // namespace

// What the option library would say of wrong arguments is for programmers, so it is left only what
// it can't get wrong.
bool parseOptions(int argc, char **argv, Options *options, FileWriter *out) {
  CLI::App app("Shows vCard and vCalendar files.", "pxcard");
  app.footer(kFooter);
  app.allow_extras();
  std::string formatName = "text";
  std::string colorName = "auto";
  const auto last = CLI::MultiOptionPolicy::TakeLast;
  auto *format = app.add_option("--format", formatName, "What to show; text when not given")
                     ->multi_option_policy(last)
                     ->option_text("FORMAT");
  auto *extract =
      app.add_option("--extract", options->directory, "Save the embedded objects in DIR instead")
          ->multi_option_policy(last)
          ->option_text("DIR");
  app.add_flag("--raw", options->raw, "Read the bytes as they stand, as trace always does")
      ->multi_option_policy(last);
  app.add_flag("--no-limit", options->noLimit,
               "Read on where a file costs more work than its size allows")
      ->multi_option_policy(last);
  app.add_option("--color", colorName, "Colours in text: auto, always or never")
      ->multi_option_policy(last)
      ->option_text("WHEN");
  app.add_option("FILE", options->files, "Files to read, - for standard input")
      ->required()
      ->option_text("...");
  app.set_version_flag("--version", std::string(), "Show the versions and exit");

  std::vector<std::string> arguments;  // last one first, as CLI11 takes them
  for (int i = argc - 1; i > 0; --i) {
    arguments.emplace_back(argv[i]);
    // CLI11 would take a name in brackets for a list of names. Undone below.
    if (arguments.back().starts_with('[')) arguments.back().insert(0, "./");
  }
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::CallForHelp &) {
    out->write(app.help());
    return false;
  } catch (const CLI::CallForVersion &) {
    out->write(std::string("pxcard " PX_VERSION " (libpx_vcrd ") + filterLibrary().version + ")\n");
    return false;
  } catch (const CLI::ArgumentMismatch &error) {
    const std::string text = error.what();  // the option's name and a colon come first
    throw UsageError(text.substr(0, text.find(':')) + " needs a value");
  } catch (const CLI::RequiredError &) {
    throw UsageError("no file is given");
  } catch (const CLI::ParseError &) {
    throw UsageError("the arguments make no sense");
  }
  const auto undo = [](std::string *argument) {
    if (argument->starts_with("./[")) argument->erase(0, 2);
  };
  undo(&formatName);
  undo(&colorName);
  undo(&options->directory);
  for (std::string &file : options->files) undo(&file);

  for (const std::string &extra : app.remaining()) {
    if (extra != "--") throw UsageError("unknown option " + extra);
  }
  const bool extracts = extract->count() > 0;
  if (extracts && format->count() > 0) {
    throw UsageError("--format and --extract exclude each other");
  }
  if (extracts && options->directory.empty()) throw UsageError("--extract needs a folder");
  options->format = valueNamed<Format>(formatName, "format",
                                       {{"text", Format::Text},
                                        {"json", Format::Json},
                                        {"jsonl", Format::JsonLines},
                                        {"trace", Format::Trace}});
  options->color = valueNamed<Color>(
      colorName, "time for colours",
      {{"auto", Color::Auto}, {"always", Color::Always}, {"never", Color::Never}});
  return true;
}

}  // namespace px

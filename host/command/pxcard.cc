// pxcard: shows card files as text or as the trace of calls, or saves what is embedded in them.

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "host/filter/card_run.h"
#include "host/reading/character_decoder.h"
#include "host/io/file_io.h"
#include "host/io/file_writer.h"
#include "host/filter/filter_library.h"
#include "host/saving/object_extraction.h"
#include "host/saving/save_directory.h"
#include "host/source/sniffer.h"
#include "host/io/spool.h"
#include "host/writers/text_writer.h"
#include "host/writers/trace_writer.h"

namespace px {
namespace {

enum ExitCode { ExitGood = 0, ExitFailed = 1, ExitUsage = 2 };

constexpr const char *Footer =
    "A line for each object that is saved: its name in DIR, type, size in bytes, file and card,\n"
    "with tabs between.\n"
    "\n"
    "Exit codes:\n"
    "  0  all went well\n"
    "  1  a file could not be read, is no card, or holds damaged objects; an object could not be\n"
    "     saved; or standard output could not be written. The other files are still shown.\n"
    "  2  wrong use of the command";

struct Options {
  std::string format = "text";
  std::string directory;  // to save objects in; empty: show
  std::vector<std::string> files;
};

// Arguments come from anywhere, so they are shown without what would drive the terminal.
std::string printable(const std::string &argument) {
  CharacterDecoder decoder;
  std::string decoded, shown;
  for (const char c : argument) decoder.put(static_cast<unsigned char>(c), &decoded);
  decoder.finish(&decoded);
  appendPrintable(decoded, &shown);
  return shown;
}

std::string displayName(const std::string &file) {
  return file == "-" ? "standard input" : printable(file);
}

void complain(const std::string &text) {
  std::fprintf(stderr, "pxcard: %s\n", printable(text).c_str());
}

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

[[noreturn]] void fail(int error) { throw std::system_error(error, std::generic_category()); }

FileDescriptor openInput(const std::string &file) {
  if (file == "-") return spoolInput(STDIN_FILENO);
  FileDescriptor input(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!input.isOpen()) fail(errno);
  const bool seekable = lseek(input.number(), 0, SEEK_CUR) >= 0;
  return seekable ? std::move(input) : spoolInput(input.number());
}

class Program {
 public:
  Program(const FilterLibrary &filter, const Options &options, FileWriter *out)
      : filter_(filter), options_(options), directory_(options.directory), out_(*out) {}

  // Goes through all files. Throws WriteError when standard output can't be written.
  ExitCode run() {
    for (const std::string &file : options_.files) {
      try {
        FileIo io(openInput(file));
        runFile(file, &io);
        io.check();  // a failure has looked like the end of the file to the filter
      } catch (const WriteError &) {
        throw;
      } catch (const std::bad_alloc &) {
        report(file, "out of memory");
      } catch (const std::exception &error) {
        report(file, error.what());
      }
    }
    out_.flush();
    return code_;
  }

 private:
  void report(const std::string &file, const std::string &reason) {
    out_.flush();  // on a terminal, what was shown stands above its error
    complain(displayName(file) + ": " + reason);
    code_ = ExitFailed;
  }

  // Divides what is shown of several files.
  void writeTitle(const std::string &file) {
    if (options_.files.size() == 1) return;
    out_.write((shown_++ > 0 ? "\n== " : "== ") + displayName(file) + " ==\n\n");
  }

  void runFile(const std::string &file, FileIo *io) {
    if (!options_.directory.empty()) return extract(file, io);
    if (options_.format == "trace") return trace(file, io);
    text(file, io);
  }

  void text(const std::string &file, FileIo *io) {
    TextWriter writer([this](std::string_view text) { out_.write(text); });
    CardRun run(filter_, io, &writer);
    open(&run, io);
    writeTitle(file);
    run.readAll();
    writer.finish();
  }

  void trace(const std::string &file, FileIo *io) {
    TraceWriter writer([this](std::string_view line) {
      out_.write(line);
      out_.write("\n");
    });
    CardRun run(filter_, io, &writer);
    open(&run, io);
    writeTitle(file);
    run.readAll();
  }

  void extract(const std::string &file, FileIo *io) {
    bool any = false;
    const auto announce = [&](const SavedObject &saved) {
      any = true;
      out_.write(saved.name + '\t' + saved.type + '\t' + std::to_string(saved.size) + '\t' +
                 displayName(file) + '\t' + std::to_string(saved.card) + '\n');
      if (saved.damaged) report(file, saved.name + ": cut off at a byte that is no Base64");
    };
    ObjectExtraction extraction(
        filter_, &directory_, [io] { io->check(); }, announce);
    CardRun run(filter_, io, &extraction);
    open(&run, io);
    extraction.attach(run.stream());
    run.readAll();
    io->check();
    if (any) return;
    out_.flush();
    complain(displayName(file) + ": no embedded objects");
  }

  static void open(CardRun *run, FileIo *io) {
    const int32_t answer = run->open(sniffFormat(io));
    io->check();
    if (answer == CardRun::OutOfMemory) throw std::bad_alloc();
    if (answer != VcardOpenGood) throw std::runtime_error("not a vCard or vCalendar file");
  }

  const FilterLibrary &filter_;
  const Options &options_;
  SaveDirectory directory_;
  FileWriter &out_;
  ExitCode code_ = ExitGood;
  uint32_t shown_ = 0;
};

// A file that is opened while a standard descriptor is closed takes its number, and would be read
// or written in its place. Each closed one is given to a file that fails where it would have.
void occupyStandardDescriptors() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    if (fcntl(number, F_GETFD) != -1) continue;
    if (::open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0) return;
  }
}

// Answers false when the arguments ask for the help or the version, with the text written. Throws
// UsageError. What the option library would say of wrong arguments is for programmers, so it is
// left only what it can't get wrong.
bool parse(int argc, char **argv, Options *options, FileWriter *out) {
  CLI::App app("Shows vCard and vCalendar files.", "pxcard");
  app.footer(Footer);
  app.allow_extras();
  auto *format =
      app.add_option("--format", options->format, "What to show: text (the default) or trace")
          ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
          ->option_text("FORMAT");
  auto *extract =
      app.add_option("--extract", options->directory, "Save the embedded objects in DIR instead")
          ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
          ->option_text("DIR");
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
  undo(&options->format);
  undo(&options->directory);
  for (std::string &file : options->files) undo(&file);

  const bool extracts = extract->count() > 0;
  for (const std::string &extra : app.remaining()) {
    if (extra != "--") throw UsageError("unknown option " + extra);
  }
  if (extracts && format->count() > 0)
    throw UsageError("--format and --extract exclude each other");
  if (extracts && options->directory.empty()) throw UsageError("--extract needs a folder");
  if (options->format != "text" && options->format != "trace") {
    throw UsageError("unknown format " + options->format);
  }
  return true;
}

int run(int argc, char **argv) {
  FileWriter out(STDOUT_FILENO);
  Options options;
  if (parse(argc, argv, &options, &out)) return Program(filterLibrary(), options, &out).run();
  out.flush();
  return ExitGood;
}

}  // namespace
}  // namespace px

int main(int argc, char **argv) {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is an error like a full disk
  px::occupyStandardDescriptors();
  try {
    return px::run(argc, argv);
  } catch (const px::UsageError &error) {
    px::complain(error.what());
    std::fputs("See pxcard --help.\n", stderr);
    return px::ExitUsage;
  } catch (const px::WriteError &error) {
    // A reader that has seen enough, such as head, is no news.
    if (error.code().value() != EPIPE)
      px::complain(std::string("standard output: ") + error.what());
  } catch (const std::bad_alloc &) {
    std::fputs("pxcard: out of memory\n", stderr);
  } catch (const std::exception &error) {
    px::complain(error.what());
  }
  return px::ExitFailed;
}

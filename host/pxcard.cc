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

#include "host/card_run.h"
#include "host/character_sets.h"
#include "host/file_io.h"
#include "host/file_writer.h"
#include "host/filter_library.h"
#include "host/object_extraction.h"
#include "host/sniffer.h"
#include "host/spool.h"
#include "host/text_writer.h"
#include "host/trace_writer.h"

namespace px {
namespace {

enum ExitCode { ExitGood = 0, ExitFailed = 1, ExitUsage = 2 };

constexpr const char *Footer =
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

// File names come from anywhere, so they are shown without what would drive the terminal.
std::string displayName(const std::string &file) {
  if (file == "-") return "standard input";
  CharacterDecoder decoder;
  std::string decoded, name;
  for (const char c : file) decoder.put(static_cast<unsigned char>(c), &decoded);
  decoder.finish(&decoded);
  appendPrintable(decoded, &name);
  return name;
}

void complain(const std::string &subject, const std::string &reason) {
  std::fprintf(stderr, "pxcard: %s: %s\n", subject.c_str(), reason.c_str());
}

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
      : filter_(filter), options_(options), out_(*out) {}

  // Goes through all files. Throws WriteError when standard output can't be written.
  ExitCode run() {
    for (const std::string &file : options_.files) {
      try {
        FileIo io(openInput(file));
        runFile(file, &io);
        // A failure has looked like the end of the file to the filter.
        if (io.error() != 0) fail(io.error());
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
    complain(displayName(file), reason);
    code_ = ExitFailed;
  }

  void runFile(const std::string &file, FileIo *io) {
    if (!options_.directory.empty()) return extract(file, io);
    if (options_.format == "trace") return trace(io);
    text(file, io);
  }

  void text(const std::string &file, FileIo *io) {
    TextWriter writer([this](std::string_view text) { out_.write(text); });
    CardRun run(filter_, io, &writer);
    open(&run, io);
    if (options_.files.size() > 1) {
      out_.write((shown_++ > 0 ? "\n== " : "== ") + displayName(file) + " ==\n\n");
    }
    run.readAll();
    writer.finish();
  }

  void trace(FileIo *io) {
    TraceWriter writer([this](std::string_view line) {
      out_.write(line);
      out_.write("\n");
    });
    CardRun run(filter_, io, &writer);
    open(&run, io);
    run.readAll();
  }

  void extract(const std::string &file, FileIo *io) {
    ObjectExtraction extraction(filter_, options_.directory, [&](const SavedObject &saved) {
      out_.write(saved.name + '\t' + saved.type + '\t' + std::to_string(saved.size) + '\n');
      if (saved.damaged) report(file, saved.name + ": cut off at a byte that is no Base64");
    });
    CardRun run(filter_, io, &extraction);
    open(&run, io);
    extraction.attach(run.stream());
    run.readAll();
  }

  static void open(CardRun *run, FileIo *io) {
    const int32_t answer = run->open(sniffFormat(io));
    if (io->error() != 0) fail(io->error());
    if (answer == CardRun::OutOfMemory) throw std::bad_alloc();
    if (answer != VcardOpenGood) throw std::runtime_error("not a vCard or vCalendar file");
  }

  const FilterLibrary &filter_;
  const Options &options_;
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

int run(int argc, char **argv, FileWriter *out) {
  Options options;
  CLI::App app("Shows vCard and vCalendar files.", "pxcard");
  app.footer(Footer);
  auto *format =
      app.add_option("--format", options.format, "What to show: text (the default) or trace")
          ->check(CLI::IsMember({"text", "trace"}))
          ->option_text("FORMAT");
  app.add_option("--extract", options.directory, "Save the embedded objects in DIR instead")
      ->check([](const std::string &name) { return name.empty() ? "empty name" : std::string(); })
      ->excludes(format)
      ->option_text("DIR");
  app.add_option("FILE", options.files, "Files to read, - for standard input")
      ->required()
      ->option_text("...");
  app.set_version_flag("--version", std::string(), "Show the versions and exit");

  std::vector<std::string> arguments;  // last one first, as CLI11 takes them
  for (int i = argc - 1; i > 0; --i) {
    arguments.emplace_back(argv[i]);
    // CLI11 would take a name in brackets for a list of names. Undone below.
    if (arguments.back().starts_with('[')) arguments.back().insert(0, "./");
  }
  bool versionWanted = false;
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::CallForHelp &) {
    out->write(app.help());
    out->flush();
    return ExitGood;
  } catch (const CLI::CallForVersion &) {
    versionWanted = true;
  } catch (const CLI::ParseError &error) {
    std::fprintf(stderr, "pxcard: %s\nSee pxcard --help.\n", error.what());
    return ExitUsage;
  }

  for (std::string &file : options.files) {
    if (file.starts_with("./[")) file.erase(0, 2);
  }

  const FilterLibrary &filter = filterLibrary();
  if (versionWanted) {
    out->write(std::string("pxcard " PX_VERSION " (libpx_vcrd ") + filter.version + ")\n");
    out->flush();
    return ExitGood;
  }
  return Program(filter, options, out).run();
}

}  // namespace
}  // namespace px

int main(int argc, char **argv) {
  std::signal(SIGPIPE, SIG_IGN);
  px::occupyStandardDescriptors();
  px::FileWriter out(STDOUT_FILENO);
  try {
    return px::run(argc, argv, &out);
  } catch (const px::WriteError &error) {
    // A reader that has seen enough, such as head, is no news.
    if (error.code().value() != EPIPE) px::complain("standard output", error.what());
  } catch (const std::exception &error) {
    std::fprintf(stderr, "pxcard: %s\n", error.what());
  }
  return px::ExitFailed;
}

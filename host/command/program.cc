#include "host/command/program.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <system_error>

#include "host/filter/card_run.h"
#include "host/io/spool.h"
#include "host/reading/character_decoder.h"
#include "host/reading/file_reading.h"
#include "host/saving/content_type.h"
#include "host/saving/object_extraction.h"
#include "host/source/sniffer.h"
#include "host/source/utf8.h"
#include "host/writers/file_text.h"
#include "host/writers/trace_writer.h"

namespace px {
namespace {

std::string displayName(const std::string &file) {
  return file == "-" ? "standard input" : printable(file);
}

[[noreturn]] void fail(int error) { throw std::system_error(error, std::generic_category()); }

FileDescriptor openInput(const std::string &file) {
  if (file == "-") return spoolInput(STDIN_FILENO);
  FileDescriptor input(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!input.isOpen()) fail(errno);
  const bool seekable = lseek(input.number(), 0, SEEK_CUR) >= 0;
  return seekable ? std::move(input) : spoolInput(input.number());
}

std::string contentTypeOf(const void *bytes, size_t size) {
  return std::string(guessContentType({static_cast<const char *>(bytes), size}).mime);
}

TextLook lookOf(Color color) {
  TextLook look;
  winsize window{};
  const bool isTerminal = isatty(STDOUT_FILENO) == 1;
  if (isTerminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0) {
    look.width = window.ws_col;
  }
  const char *without = std::getenv("NO_COLOR");
  const bool wanted = isTerminal && !(without && *without);
  look.color = color == Color::Always || (color == Color::Auto && wanted);
  return look;
}

}  // namespace

std::string printable(const std::string &text) {
  CharacterDecoder decoder;
  std::string decoded, shown;
  for (const char c : text) decoder.put(static_cast<unsigned char>(c), &decoded);
  decoder.finish(&decoded);
  appendPrintable(decoded, &shown);
  return shown;
}

void complain(const std::string &text) {
  std::fprintf(stderr, "pxcard: %s\n", printable(text).c_str());
}

Program::Program(const FilterLibrary &filter, const Options &options, FileWriter *out)
    : filter_(filter),
      options_(options),
      out_(*out),
      directory_(options.directory),
      json_(options.format == Format::Json ? JsonForm::Array : JsonForm::Lines, contentTypeOf,
            [out](std::string_view text) { out->write(text); }) {
  // With less the filter reads a file in many small pieces. Where it reads a stranger's bytes as they
  // stand it has less all the same: what it reads again inside of its buffer no limit sees.
  constexpr uint32_t kilobytes = 64;
  if (!options.raw && options.format != Format::Trace) setInputBuffer(filter_, kilobytes);
}

ExitCode Program::run() {
  const bool isJson = options_.directory.empty() &&
                      (options_.format == Format::Json || options_.format == Format::JsonLines);
  if (isJson) json_.begin();
  for (const std::string &file : options_.files) {
    std::string failure;
    try {
      runFile(file);
      continue;
    } catch (const WriteError &) {
      throw;
    } catch (const std::bad_alloc &) {
      failure = "out of memory";
    } catch (const std::exception &error) {
      failure = error.what();
    }
    if (isJson) json_.error(displayName(file), printable(failure));
    report(file, failure);
  }
  if (isJson) json_.end();
  out_.flush();
  return code_;
}

void Program::runFile(const std::string &file) {
  FileIo io(openInput(file));
  limit_.emplace(!options_.noLimit);
  try {
    read(file, &io);
  } catch (const WriteError &) {
    throw;
  } catch (const std::runtime_error &) {
    io.check();  // these know better why
    limit_->check();
    throw;
  }
  io.check();  // a failure has looked like the end of the file to the filter
  limit_->check();
}

void Program::read(const std::string &file, FileIo *io) {
  if (!options_.directory.empty()) return extract(file, io);
  switch (options_.format) {
    case Format::Text:
      return text(file, io);
    case Format::Trace:
      return trace(file, io);
    case Format::Json:
    case Format::JsonLines:
      json_.beginFile(displayName(file));
      readInto(file, io, &json_);
      return json_.flush();
  }
}

// Faults are reported as they are met, up to a number that still helps a person.
void Program::readInto(const std::string &file, FileIo *io, CardEvents *events) {
  constexpr uint64_t most = 100;
  uint64_t count = 0;
  const FaultSink fault = [&](uint64_t line, const std::string &text) {
    if (++count <= most) report(file, "line " + std::to_string(line) + ": " + text);
  };
  const Reading reading = options_.raw ? Reading::Raw : Reading::Viewed;
  readFile(filter_, io, reading, fault, events, &*limit_);
  if (count > most) report(file, std::to_string(count - most) + " more of that kind");
}

void Program::report(const std::string &file, const std::string &reason) {
  out_.flush();  // on a terminal, what was shown stands above its error
  complain(displayName(file) + ": " + reason);
  code_ = ExitFailed;
}

// Divides what is shown of several files.
void Program::writeTitle(const std::string &file) {
  if (options_.files.size() == 1) return;
  out_.write((shown_++ > 0 ? "\n== " : "== ") + displayName(file) + " ==\n\n");
}

void Program::text(const std::string &file, FileIo *io) {
  bool begun = false;
  FileText writer(lookOf(options_.color), contentTypeOf, [&](std::string_view text) {
    if (!begun) writeTitle(file);  // not above a file that is no card
    begun = true;
    out_.write(text);
  });
  readInto(file, io, &writer);
  writer.finish();
}

void Program::trace(const std::string &file, FileIo *io) {
  TraceWriter writer([this](std::string_view line) {
    out_.write(line);
    out_.write("\n");
  });
  LimitedIo limited(io, &*limit_, PastLimit::Fails);
  CardRun run(filter_, &limited, &writer);
  openRun(&run, sniffFormat(io));
  writeTitle(file);
  readLimited(&run, limited, true, &*limit_);
}

void Program::extract(const std::string &file, FileIo *io) {
  bool any = false;
  const auto announce = [&](const SavedObject &saved) {
    any = true;
    out_.write(saved.name + '\t' + saved.type + '\t' + std::to_string(saved.size) + '\t' +
               displayName(file) + '\t' + std::to_string(saved.card) + '\n');
    if (saved.damaged) report(file, saved.name + ": cut off at a byte that is no Base64");
  };
  ObjectExtraction extraction(
      &directory_, [io] { io->check(); }, announce);
  readInto(file, io, &extraction);
  io->check();
  if (any) return;
  out_.flush();
  complain(displayName(file) + ": no embedded objects");
}

}  // namespace px

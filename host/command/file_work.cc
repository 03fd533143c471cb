#include "host/command/file_work.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "host/command/error_text.h"
#include "host/command/messages.h"
#include "host/filter/card_run.h"
#include "host/io/file_io.h"
#include "host/io/limited_io.h"
#include "host/io/spool.h"
#include "host/languages/translation.h"
#include "host/reading/file_reading.h"
#include "host/saving/content_type.h"
#include "host/source/documents.h"
#include "host/writers/file_text.h"
#include "host/writers/json_writer.h"
#include "host/writers/trace_writer.h"

namespace px {
namespace {

[[noreturn]] void fail(int error) { throw std::system_error(error, std::generic_category()); }

FileDescriptor openInput(const std::string &file) {
  if (file == "-") return spoolInput(STDIN_FILENO);
  FileDescriptor input(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!input.isOpen()) fail(errno);
  struct stat status;
  if (fstat(input.number(), &status) == 0 && S_ISDIR(status.st_mode)) {
    throw std::runtime_error(N_("is a folder; -r reads the files below it"));
  }
  const bool seekable = lseek(input.number(), 0, SEEK_CUR) >= 0;
  return seekable ? std::move(input) : spoolInput(input.number());
}

class FileWork {
 public:
  FileWork(const WorkSettings &settings, const Input &input, FileOutput *output)
      : settings_(settings),
        options_(settings.options),
        input_(input),
        name_(displayName(input.name)),
        output_(*output),
        limit_(!settings.options.noLimit) {
    const bool isArray = options_.task == Task::Json;
    if (isArray || options_.task == Task::JsonLines) {
      json_.emplace(isArray ? JsonForm::Elements : JsonForm::Lines, contentTypeOf,
                    [this](std::string_view text) { output_.write(text); });
    }
  }

  bool run();

 private:
  void read(FileIo *io);
  void text(FileIo *io);
  void trace(FileIo *io);
  void extract(FileIo *io);
  void readInto(FileIo *io, CardEvents *events);

  void writeTitle();
  void report(const std::string &fault);
  void end(const std::string &fault);

  const WorkSettings &settings_;
  const Options &options_;
  const Input &input_;
  const std::string name_;
  FileOutput &output_;
  WorkLimit limit_;
  std::optional<JsonWriter> json_;
  bool good_ = true;
};

bool FileWork::run() {
  try {
    if (!input_.fault.empty()) throw std::runtime_error(input_.fault);
    FileIo io(openInput(input_.name));
    io.countIn(settings_.bytesRead);
    try {
      read(&io);
    } catch (const WriteError &) {
      throw;
    } catch (const std::runtime_error &) {
      io.check();  // knows better why
      if (!limit_.stoppedAt()) throw;
    }
    io.check();  // a failure has looked like the end of the file to the filter
    if (limit_.stoppedAt()) {
      end(filled(tr("more work than its size allows; stopped at byte %1 (--no-limit reads on)"),
                 {std::to_string(*limit_.stoppedAt())}));
    }
  } catch (const WriteError &) {
    throw;
  } catch (const std::exception &error) {
    end(errorText(error));
  }
  return good_;
}

// Tells what has ended the file before its end.
void FileWork::end(const std::string &fault) {
  if (json_) {
    json_->error(name_, printable(fault));
    json_->flush();
  }
  if (options_.task == Task::Html) settings_.page->error(name_, printable(fault));
  report(fault);
}

void FileWork::read(FileIo *io) {
  switch (options_.task) {
    case Task::Text:
      return text(io);
    case Task::Html:
      settings_.page->beginFile(name_);
      return readInto(io, settings_.page);
    case Task::Json:
    case Task::JsonLines:
      json_->beginFile(name_);
      readInto(io, &*json_);
      return json_->flush();
    case Task::Trace:
      return trace(io);
    case Task::Check: {
      CardEvents nothing;
      return readInto(io, &nothing);
    }
    case Task::Extract:
      return extract(io);
  }
}

// Faults are told as they are met: all where they are what was asked for, else up to a number that
// still helps a person.
void FileWork::readInto(FileIo *io, CardEvents *events) {
  const uint64_t most = options_.task == Task::Check ? UINT64_MAX : 100;
  uint64_t count = 0;
  const FaultSink fault = [&](uint64_t line, const std::string &text) {
    if (++count > most) return;
    report(filled(tr("line %1: %2"), {std::to_string(line), faultText(text)}));
  };
  const Reading reading = options_.raw ? Reading::Raw : Reading::Viewed;
  readFile(settings_.filter, io, reading, fault, events, &limit_);
  if (count > most) {
    report(filled(tr("%1 more of that kind; --check tells all"), {std::to_string(count - most)}));
  }
}

void FileWork::report(const std::string &fault) {
  output_.complain(name_ + ": " + fault);
  good_ = false;
}

// Divides what is shown of several files.
void FileWork::writeTitle() {
  if (settings_.titled) output_.write("== " + name_ + " ==\n\n");
}

void FileWork::text(FileIo *io) {
  bool begun = false;
  FileText writer(settings_.look, contentTypeOf, [&](std::string_view text) {
    if (!begun) writeTitle();  // not above a file that is no card
    begun = true;
    output_.write(text);
  });
  readInto(io, &writer);
  writer.finish();
}

void FileWork::trace(FileIo *io) {
  TraceWriter writer([this](std::string_view line) {
    output_.write(line);
    output_.write("\n");
  });
  Documents documents(io, Reading::Raw, {}, &limit_);
  Documents::Document document;
  documents.next(&document);
  CardRun run(settings_.filter, document.io, &writer);
  openRun(&run, document.format, &documents);
  writeTitle();
  run.readAll();
  if (run.gaveUp()) documents.stop(0);
}

void FileWork::extract(FileIo *io) {
  bool any = false;
  const auto announce = [&](const SavedObject &saved) {
    any = true;
    output_.write(saved.name + '\t' + saved.type + '\t' + std::to_string(saved.size) + '\t' +
                  name_ + '\t' + std::to_string(saved.card) + '\n');
    if (saved.damaged) {
      report(filled(tr("%1: cut off at a byte that is no Base64"), {saved.name}));
    }
  };
  const std::string fileName = input_.name == "-" ? "stdin" : name_;
  ObjectExtraction extraction(
      fileName, settings_.target, [io] { io->check(); }, announce);
  readInto(io, &extraction);
  io->check();
  if (!any) output_.complain(name_ + ": " + std::string(tr("no embedded objects")));
}

}  // namespace

std::string contentTypeOf(const void *bytes, size_t size) {
  return std::string(guessContentType({static_cast<const char *>(bytes), size}).mime);
}

OutputFrame frameOf(Task task) {
  switch (task) {
    case Task::Text:
    case Task::Trace:
      return {"", "\n", ""};
    case Task::Json:
      return {"[", ",", "\n]\n"};
    default:
      return {"", "", ""};
  }
}

bool doFile(const WorkSettings &settings, const Input &input, FileOutput *output) {
  return FileWork(settings, input, output).run();
}

}  // namespace px

#include "host/command/file_work.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "host/command/error_text.h"
#include "host/command/messages.h"
#include "host/command/object_events.h"
#include "host/io/file_io.h"
#include "host/io/file_writer.h"
#include "host/io/spool.h"
#include "host/languages/translation.h"

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

// Closes what a reader has open, before what it reads ends.
struct Closing {
  CardReader &reader;
  ~Closing() { PxClose(reader.get()); }
};

class FileWork {
 public:
  FileWork(const WorkSettings &settings, const Input &input, FileOutput *output)
      : settings_(settings),
        options_(settings.options),
        input_(input),
        name_(displayName(input.name)),
        output_(*output),
        reader_(settings.page ? *settings.page : own_.emplace()),
        most_(options_.task == Task::Check ? UINT64_MAX : 100) {}

  ExitCode run();

 private:
  bool isJson() const { return options_.task == Task::Json || options_.task == Task::JsonLines; }
  // What JSON calls the file: the name as it was given, and one word in every language.
  std::string givenName() const { return input_.name == "-" ? "standard input" : input_.name; }
  void open(FileIo *io);
  void read(FileIo *io);
  void readAll(FileIo *io);
  void text();
  void json();
  void trace();
  void extract(FileIo *io);
  void extractOne();

  template <class Step>
  void writeJson(Step step);
  void writeTitled(std::string_view text);
  void report(ExitCode code, const std::string &fault);
  void end(const std::string &fault);

  const WorkSettings &settings_;
  const Options &options_;
  const Input &input_;
  const std::string name_;
  FileOutput &output_;
  std::optional<CardReader> own_;
  CardReader &reader_;
  const uint64_t most_;  // faults that are told: all where they are what was asked for, else a
                         // number that still helps a person
  uint64_t faults_ = 0;
  bool begun_ = false;  // something was written
  ExitCode code_ = ExitGood;
};

ExitCode FileWork::run() {
  try {
    if (!input_.fault.empty()) throw std::runtime_error(input_.fault);
    FileIo io(openInput(input_.name));
    io.countIn(settings_.bytesRead);
    const Closing closing{reader_};
    try {
      open(&io);
      read(&io);
    } catch (const WriteError &) {
      throw;
    } catch (const std::runtime_error &) {
      io.check();  // knows better why
      throw;
    }
    io.check();  // a failure has looked like the end of the file to the filter
  } catch (const WriteError &) {
    throw;
  } catch (const std::exception &error) {
    end(errorText(error));
  }
  return code_;
}

// Faults are told as they are met.
void FileWork::open(FileIo *io) {
  PxReader *reader = reader_.get();
  reader_.setFault([this](uint64_t line, const char *text) {
    if (++faults_ > most_) return;
    report(ExitFaults, filled(tr("line %1: %2"), {std::to_string(line), faultText(text)}));
  });
  PxSetRaw(reader, options_.raw);
  PxSetLimit(reader, !options_.noLimit);
  reader_.check(PxOpenIo(reader, io));
  reader_.check(PxSetName(reader, isJson() ? givenName().c_str() : name_.c_str()));
}

void FileWork::read(FileIo *io) {
  const auto tellOthers = [&] {
    if (faults_ <= most_) return;
    report(ExitFaults, filled(tr("%1 more of that kind; --check tells all"),
                              {std::to_string(faults_ - most_)}));
  };
  try {
    readAll(io);
  } catch (const CardError &) {
    tellOthers();
    throw;
  }
  tellOthers();
  if (options_.task == Task::Extract && !begun_) {
    output_.complain(name_ + ": " + std::string(tr("no embedded objects")));
  }
}

void FileWork::readAll(FileIo *io) {
  switch (options_.task) {
    case Task::Text:
      return text();
    case Task::Html:
      reader_.check(PxWriteHtml(reader_.get()));
      return;
    case Task::Json:
    case Task::JsonLines:
      return json();
    case Task::Trace:
      return trace();
    case Task::Check: {
      PxEvents nothing{};
      nothing.size = sizeof nothing;
      while (reader_.check(PxReadEvents(reader_.get(), &nothing, nullptr))) {
      }
      return;
    }
    case Task::Extract:
      return extract(io);
    case Task::ExtractOne:
      return extractOne();
  }
}

// Tells what has ended the file before its end.
void FileWork::end(const std::string &fault) {
  const std::string shown = printable(fault);
  if (isJson()) {
    const std::string name = givenName();
    writeJson(
        [&] { return PxWriteJsonError(name.c_str(), shown.c_str(), CardReader::sink, &reader_); });
  }
  if (options_.task == Task::Html) {
    reader_.check(PxTellOnPage(reader_.get(), name_.c_str(), shown.c_str()));
  }
  report(ExitFailed, fault);
}

void FileWork::report(ExitCode code, const std::string &fault) {
  output_.complain(name_ + ": " + fault);
  code_ = std::max(code_, code);
}

// Divides what is shown of several files; nothing stands above a file that is no card.
void FileWork::writeTitled(std::string_view text) {
  if (!std::exchange(begun_, true) && settings_.titled) output_.write("== " + name_ + " ==\n\n");
  output_.write(text);
}

void FileWork::text() {
  reader_.setWrite([this](std::string_view text) { writeTitled(text); });
  const PxLook look{sizeof look, settings_.look.width, settings_.look.color};
  reader_.check(PxWriteText(reader_.get(), &look, CardReader::sink, &reader_));
}

void FileWork::trace() {
  reader_.setWrite([this](std::string_view text) { writeTitled(text); });
  reader_.check(PxWriteTrace(reader_.get(), CardReader::sink, &reader_));
}

void FileWork::json() {
  bool any = true;
  while (any) {
    writeJson([&] {
      const int32_t answer = PxWriteJson(reader_.get(), CardReader::sink, &reader_);
      any = answer == PxGood;
      return answer;
    });
  }
}

// Writes the text that `step` gives, if any, on a line of its own: an element of an array with a
// comma to the one before, or a line.
template <class Step>
void FileWork::writeJson(Step step) {
  const bool isArray = options_.task == Task::Json;
  bool wrote = false;
  reader_.setWrite([&](std::string_view text) {
    if (!std::exchange(wrote, true) && isArray) output_.write(begun_ ? ",\n" : "\n");
    begun_ = true;
    output_.write(text);
  });
  const int32_t answer = step();
  if (wrote && !isArray) output_.write("\n");
  reader_.check(answer);
}

void FileWork::extract(FileIo *io) {
  const auto announce = [&](const SavedObject &saved) {
    begun_ = true;
    output_.write(saved.name + '\t' + saved.type + '\t' + std::to_string(saved.size) + '\t' +
                  name_ + '\t' + std::to_string(saved.card) + '\n');
    if (saved.damaged) {
      report(ExitFaults, filled(tr("%1: cut off at a byte that is no Base64"), {saved.name}));
    }
  };
  const std::string fileName = input_.name == "-" ? "stdin" : name_;
  ObjectExtraction extraction(
      fileName, settings_.target, [io] { io->check(); }, announce);
  while (readObjects(&reader_, &extraction)) {
  }
  io->check();
}

void FileWork::extractOne() {
  while (!settings_.choice->isMade() && readObjects(&reader_, settings_.choice)) {
  }
}

}  // namespace

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

ExitCode doFile(const WorkSettings &settings, const Input &input, FileOutput *output) {
  return FileWork(settings, input, output).run();
}

}  // namespace px

#include "host/command/program.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "host/command/card_reader.h"
#include "host/command/file_output.h"
#include "host/command/file_work.h"
#include "host/command/inputs.h"
#include "host/command/jobs.h"
#include "host/command/messages.h"
#include "host/command/output_file.h"
#include "host/command/output_guard.h"
#include "host/command/progress.h"
#include "host/command/whole_number.h"
#include "host/filter/filter_library.h"
#include "host/io/file_writer.h"
#include "host/languages/translation.h"

namespace px {
namespace {

// A terminal's own width counts: COLUMNS is what it was when some program started.
uint32_t widthOf(int file) {
  winsize window{};
  if (ioctl(file, TIOCGWINSZ, &window) == 0 && window.ws_col > 0) return window.ws_col;
  const char *columns = std::getenv("COLUMNS");
  const uint32_t width = wholeNumber(columns ? columns : "").value_or(0);
  return width > 0 ? width : TextLook().width;
}

TextLook lookOf(const Options &options, int file) {
  TextLook look;
  look.width = options.width ? *options.width : widthOf(file);
  const char *without = std::getenv("NO_COLOR");
  const bool wanted = isatty(file) == 1 && !(without && *without);
  look.color = options.color == Color::Always || (options.color == Color::Auto && wanted);
  return look;
}

// A terminal that shows the output needs no more to tell that there is progress.
bool showsProgress(const Options &options, int file) {
  if (options.quiet || isatty(STDERR_FILENO) != 1) return false;
  return options.task == Task::Check || isatty(file) != 1;
}

std::string pageTitle(const Options &options, const InputList &inputs) {
  if (inputs.isSingle() && options.files.size() == 1) return displayName(options.files.front());
  return std::string(tr("Cards and calendars"));
}

std::string missingObject(uint32_t wanted, uint32_t count) {
  if (wanted == ObjectChoice::Picture) return std::string(tr("no picture is embedded"));
  if (count == 0) return std::string(tr("no embedded objects"));
  return filled(tr("there is no object %1; there are %2"),
                {std::to_string(wanted), std::to_string(count)});
}

// Writes the object that was chosen. Where there is none it throws, so that no file is replaced.
ExitCode writeChoice(const Options &options, const ObjectChoice &choice, FileWriter *writer,
                     DirectOutput *output) {
  if (!choice.isFound()) throw std::runtime_error(missingObject(options.object, choice.count()));
  choice.write(writer);
  if (!choice.isDamaged()) return ExitGood;
  output->complain(filled(tr("%1: cut off at a byte that is no Base64"), {"-"}));
  return ExitFaults;
}

ExitCode runInto(const Options &options, const OutputGuard &guard, int file) {
  // With less the filter reads a file in many small pieces. Where it reads a stranger's bytes as
  // they stand it has less all the same: what it reads again inside of its buffer no limit sees.
  constexpr uint32_t kilobytes = 64;
  if (!options.raw && options.task != Task::Trace) setInputBuffer(filterLibrary(), kilobytes);
  FileWriter writer(file);
  InputList inputs(options);
  Progress progress(options, showsProgress(options, file));
  ObjectExtraction::Target target{SaveDirectory(options.directory), {}, options.namePattern};
  DirectOutput output(frameOf(options.task), options.quiet, &writer);
  ObjectChoice choice(options.object);
  std::optional<CardReader> page;
  const WorkSettings settings{.options = options,
                              .look = lookOf(options, file),
                              .titled = !inputs.isSingle(),
                              .target = &target,
                              .choice = &choice,
                              .page = options.task == Task::Html ? &page.emplace() : nullptr,
                              .bytesRead = &progress.bytes};
  const WorkOnFile work = [&](const Input &input, FileOutput *to) {
    if (choice.isMade()) return ExitGood;
    if (input.fault.empty()) guard.check(input.name);
    const ExitCode code = doFile(settings, input, to);
    ++progress.files;
    return code;
  };
  // The objects' names go by the order of the files, and a page is one text.
  const bool inOrder = options.task == Task::Extract || options.task == Task::ExtractOne ||
                       options.task == Task::Html;
  const uint32_t jobs = inOrder ? 1 : options.jobs;
  output.begin();
  if (page) {
    page->setWrite([&output](std::string_view html) { output.write(html); });
    page->check(PxBeginPage(page->get(), pageTitle(options, inputs).c_str(), !inputs.isSingle(),
                            CardReader::sink, &*page));
  }
  ExitCode code = runFiles(&inputs, jobs, work, &output);
  if (options.task == Task::ExtractOne) {
    code = std::max(code, writeChoice(options, choice, &writer, &output));
  }
  if (page) page->check(PxEndPage(page->get()));
  output.end();
  return options.tolerant && code == ExitFaults ? ExitGood : code;
}

}  // namespace

ExitCode writeOutput(const std::string &name, const std::function<ExitCode(int file)> &write) {
  if (name.empty()) return write(STDOUT_FILENO);
  OutputFile file(name);
  try {
    const ExitCode code = write(file.number());
    file.commit();
    return code;
  } catch (const WriteError &error) {
    throw std::system_error(error.code(), name);
  }
}

ExitCode runProgram(const Options &options) {
  const OutputGuard guard(options);
  guard.checkNamed(options);
  return writeOutput(options.output, [&](int file) { return runInto(options, guard, file); });
}

}  // namespace px

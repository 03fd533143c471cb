#include "host/command/program.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <system_error>

#include "host/command/card_reader.h"
#include "host/command/file_output.h"
#include "host/command/file_work.h"
#include "host/command/inputs.h"
#include "host/command/jobs.h"
#include "host/command/messages.h"
#include "host/command/output_file.h"
#include "host/command/progress.h"
#include "host/filter/filter_library.h"
#include "host/io/file_writer.h"
#include "host/languages/translation.h"

namespace px {
namespace {

TextLook lookOf(Color color, int file) {
  TextLook look;
  winsize window{};
  const bool isTerminal = isatty(file) == 1;
  if (isTerminal && ioctl(file, TIOCGWINSZ, &window) == 0 && window.ws_col > 0) {
    look.width = window.ws_col;
  }
  const char *without = std::getenv("NO_COLOR");
  const bool wanted = isTerminal && !(without && *without);
  look.color = color == Color::Always || (color == Color::Auto && wanted);
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

ExitCode runInto(const Options &options, int file) {
  // With less the filter reads a file in many small pieces. Where it reads a stranger's bytes as
  // they stand it has less all the same: what it reads again inside of its buffer no limit sees.
  constexpr uint32_t kilobytes = 64;
  if (!options.raw && options.task != Task::Trace) setInputBuffer(filterLibrary(), kilobytes);
  FileWriter writer(file);
  InputList inputs(options);
  Progress progress(options, showsProgress(options, file));
  ObjectExtraction::Target target{SaveDirectory(options.directory), {}, options.namePattern};
  DirectOutput output(frameOf(options.task), options.quiet, &writer);
  std::optional<CardReader> page;
  const WorkSettings settings{.options = options,
                              .look = lookOf(options.color, file),
                              .titled = !inputs.isSingle(),
                              .target = &target,
                              .page = options.task == Task::Html ? &page.emplace() : nullptr,
                              .bytesRead = &progress.bytes};
  const WorkOnFile work = [&](const Input &input, FileOutput *to) {
    const bool good = doFile(settings, input, to);
    ++progress.files;
    return good;
  };
  // The objects' names go by the order of the files, and a page is one text.
  const bool inOrder = options.task == Task::Extract || options.task == Task::Html;
  const uint32_t jobs = inOrder ? 1 : options.jobs;
  output.begin();
  if (page) {
    page->setWrite([&output](std::string_view html) { output.write(html); });
    page->check(PxBeginPage(page->get(), pageTitle(options, inputs).c_str(), !inputs.isSingle(),
                            CardReader::sink, &*page));
  }
  const bool good = runFiles(&inputs, jobs, work, &output);
  if (page) page->check(PxEndPage(page->get()));
  output.end();
  return good ? ExitGood : ExitFailed;
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
  return writeOutput(options.output, [&options](int file) { return runInto(options, file); });
}

}  // namespace px

// pxcard: shows card files as text, JSON or the trace of calls, or saves what is embedded in them.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "host/command/completion.h"
#include "host/command/error_text.h"
#include "host/command/help.h"
#include "host/command/messages.h"
#include "host/command/options.h"
#include "host/command/program.h"
#include "host/filter/filter_library.h"
#include "host/io/file_writer.h"
#include "host/languages/translation.h"
#include "px/version.h"

namespace px {
namespace {

// A file that is opened while a standard descriptor is closed takes its number, and would be read
// or written in its place. Each closed one is given to a file that fails where it would have.
void occupyStandardDescriptors() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    if (fcntl(number, F_GETFD) != -1) continue;
    if (::open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0) return;
  }
}

std::string answerTo(const Options &options) {
  switch (options.question) {
    case Question::Help:
      return helpText();
    case Question::Completion:
      return completionScript(options.shell);
    default:
      return std::string("pxcard " PX_VERSION " (libpx_vcrd ") + filterLibrary().version + ")\n";
  }
}

ExitCode run(int argc, char **argv) {
  const Options options = parseOptions(argc, argv);
  if (options.question == Question::None) return runProgram(options);
  const std::string answer = answerTo(options);
  return writeOutput(options.output, [&answer](int file) {
    FileWriter out(file);
    out.write(answer);
    out.flush();
    return ExitGood;
  });
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
    std::fputs(px::filled(px::tr("See %1."), {"pxcard --help"}).append("\n").c_str(), stderr);
    return px::ExitUsage;
  } catch (const px::WriteError &error) {
    // A reader that has seen enough, such as head, is no news.
    if (error.code().value() != EPIPE) {
      px::complain(std::string(px::tr("standard output")) + ": " + px::errorText(error));
    }
  } catch (const std::exception &error) {
    px::complain(px::errorText(error));
  }
  return px::ExitFailed;
}

// pxcard: shows card files as text, JSON or the trace of calls, or saves what is embedded in them.

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include "host/command/options.h"
#include "host/command/program.h"
#include "host/filter/filter_library.h"

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

int run(int argc, char **argv) {
  FileWriter out(STDOUT_FILENO);
  Options options;
  if (parseOptions(argc, argv, &options, &out)) {
    return Program(filterLibrary(), options, &out).run();
  }
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

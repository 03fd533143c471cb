// The arguments of pxcard.

#ifndef PX_HOST_COMMAND_OPTIONS_H
#define PX_HOST_COMMAND_OPTIONS_H

#include <stdexcept>
#include <string>
#include <vector>

#include "host/io/file_writer.h"

namespace px {

enum ExitCode { ExitGood = 0, ExitFailed = 1, ExitUsage = 2 };

enum class Format { Text, Json, JsonLines, Trace };

enum class Color { Auto, Always, Never };

struct Options {
  Format format = Format::Text;
  std::string directory;  // to save objects in; empty: show
  bool raw = false;
  bool noLimit = false;
  Color color = Color::Auto;
  std::vector<std::string> files;
};

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Answers false when the arguments ask for the help or the version, with that written to `out`.
// Throws UsageError, whose text can hold an argument as it was given.
bool parseOptions(int argc, char **argv, Options *options, FileWriter *out);

}  // namespace px

#endif

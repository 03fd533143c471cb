// What pxcard does with its files.

#ifndef PX_HOST_COMMAND_PROGRAM_H
#define PX_HOST_COMMAND_PROGRAM_H

#include <functional>
#include <string>

#include "host/command/exit_code.h"
#include "host/command/options.h"

namespace px {

// Lets `write` write to the file of that name, or to standard output where the name is empty. The
// file is replaced when that is done. What can't be written is thrown: as WriteError for standard
// output, as another std::system_error with the file's name.
ExitCode writeOutput(const std::string &name, const std::function<ExitCode(int file)> &write);

// Goes through all files. What can't be read is told and goes into the answer; throws as
// writeOutput does.
ExitCode runProgram(const Options &options);

}  // namespace px

#endif

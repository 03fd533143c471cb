// What pxcard does with its files.

#ifndef PX_HOST_COMMAND_PROGRAM_H
#define PX_HOST_COMMAND_PROGRAM_H

#include "host/command/exit_code.h"
#include "host/command/options.h"

namespace px {

// Goes through all files; writes to standard output or to the output file, which is whole then.
// What can't be read is told and goes into the answer; what can't be written is thrown: as
// WriteError for standard output, as another std::system_error with the name of the output file.
ExitCode runProgram(const Options &options);

}  // namespace px

#endif

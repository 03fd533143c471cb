// Several files at a time, whose outputs come in the order of the files.

#ifndef PX_HOST_COMMAND_JOBS_H
#define PX_HOST_COMMAND_JOBS_H

#include <cstdint>
#include <functional>

#include "host/command/exit_code.h"
#include "host/command/file_output.h"
#include "host/command/inputs.h"

namespace px {

// Reads a file into the output. Called by any thread.
using WorkOnFile = std::function<ExitCode(const Input &input, FileOutput *output)>;

// Does the work for every input, one behind the other where `jobs` is 1, else with so many threads.
// Then outputs wait in spools, of a few files ahead of the first that isn't done. Answers
// the worst of the answers. Throws what the work on a file throws, and what writing to `output`
// does.
ExitCode runFiles(InputList *inputs, uint32_t jobs, const WorkOnFile &work, DirectOutput *output);

}  // namespace px

#endif

// Several files at a time, whose outputs come in the order of the files.

#ifndef PX_HOST_COMMAND_JOBS_H
#define PX_HOST_COMMAND_JOBS_H

#include <cstdint>
#include <functional>

#include "host/command/file_output.h"
#include "host/command/inputs.h"

namespace px {

// Reads a file into the output; answers whether all of it could be read. Called by any thread.
using WorkOnFile = std::function<bool(const Input &input, FileOutput *output)>;

// Does the work for every input, one behind the other where `jobs` is 1, else with so many threads.
// Then outputs wait in spools, of a few files ahead of the first that isn't done. Answers whether
// all of all files could be read. Throws what writing to `output` throws.
bool runFiles(InputList *inputs, uint32_t jobs, const WorkOnFile &work, DirectOutput *output);

}  // namespace px

#endif

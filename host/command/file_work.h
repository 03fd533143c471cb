// What is done with one file: read, and shown, checked or taken apart.

#ifndef PX_HOST_COMMAND_FILE_WORK_H
#define PX_HOST_COMMAND_FILE_WORK_H

#include <atomic>
#include <cstdint>
#include <string>

#include "host/command/card_reader.h"
#include "host/command/exit_code.h"
#include "host/command/file_output.h"
#include "host/command/inputs.h"
#include "host/command/object_choice.h"
#include "host/command/options.h"
#include "host/saving/object_extraction.h"
#include "host/writers/text_look.h"

namespace px {

// What the work on all files has in common.
struct WorkSettings {
  const Options &options;
  TextLook look;
  bool titled;                       // each file's text stands under its name
  ObjectExtraction::Target *target;  // for Task::Extract, which one thread does
  ObjectChoice *choice;              // for Task::ExtractOne, likewise
  CardReader *page;                  // for Task::Html, likewise: with the page that is open
  std::atomic<uint64_t> *bytesRead;
};

// What stands around the files' outputs.
OutputFrame frameOf(Task task);

// Does the task with a file. What couldn't be read is told to the output and makes the answer.
// Throws what writing to the output throws.
ExitCode doFile(const WorkSettings &settings, const Input &input, FileOutput *output);

}  // namespace px

#endif

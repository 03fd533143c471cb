// What pxcard does with its files.

#ifndef PX_HOST_COMMAND_PROGRAM_H
#define PX_HOST_COMMAND_PROGRAM_H

#include <optional>
#include <string>

#include "host/command/options.h"
#include "host/filter/filter_library.h"
#include "host/io/file_io.h"
#include "host/io/file_writer.h"
#include "host/io/limited_io.h"
#include "host/reading/card_events.h"
#include "host/saving/save_directory.h"
#include "host/writers/json_writer.h"

namespace px {

// Arguments and messages come from anywhere, so they are shown without what would drive the
// terminal.
std::string printable(const std::string &text);

// Writes "pxcard: TEXT" on standard error.
void complain(const std::string &text);

class Program {
 public:
  // Nothing given is owned. Standard output is `out`.
  Program(const FilterLibrary &filter, const Options &options, FileWriter *out);

  // Goes through all files. Throws WriteError when standard output can't be written.
  ExitCode run();

 private:
  void runFile(const std::string &file);
  void read(const std::string &file, FileIo *io);
  void readInto(const std::string &file, FileIo *io, CardEvents *events);
  void text(const std::string &file, FileIo *io);
  void trace(const std::string &file, FileIo *io);
  void extract(const std::string &file, FileIo *io);

  void report(const std::string &file, const std::string &reason);
  void writeTitle(const std::string &file);

  const FilterLibrary &filter_;
  const Options &options_;
  FileWriter &out_;
  SaveDirectory directory_;
  JsonWriter json_;
  std::optional<WorkLimit> limit_;  // of the file that is read
  ExitCode code_ = ExitGood;
  uint32_t shown_ = 0;  // files
};

}  // namespace px

#endif

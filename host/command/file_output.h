// Where the work on a file leaves what it writes and what it complains of. The files' outputs come
// one behind the other in the order of the files, whichever is done first.

#ifndef PX_HOST_COMMAND_FILE_OUTPUT_H
#define PX_HOST_COMMAND_FILE_OUTPUT_H

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/io/file_writer.h"
#include "host/io/spool_file.h"

namespace px {

class FileOutput {
 public:
  virtual ~FileOutput() = default;
  virtual void write(std::string_view bytes) = 0;
  // Takes a message for the person: "NAME: what is wrong".
  virtual void complain(std::string_view text) = 0;
};

// What stands around the outputs of all files and between two that have written something.
struct OutputFrame {
  std::string_view head, between, tail;
};

// Writes at once, for one file after the other.
class DirectOutput final : public FileOutput {
 public:
  // `out` isn't owned. `quiet`: complaints are dropped.
  DirectOutput(const OutputFrame &frame, bool quiet, FileWriter *out)
      : frame_(frame), quiet_(quiet), out_(*out) {}

  void begin() { out_.write(frame_.head); }
  void beginFile() { wroteFile_ = false; }
  void end();

  void write(std::string_view bytes) override;
  void complain(std::string_view text) override;

 private:
  const OutputFrame frame_;
  const bool quiet_;
  FileWriter &out_;
  bool wroteAny_ = false;
  bool wroteFile_ = false;
};

// Keeps all for later, in spools.
class HeldOutput final : public FileOutput {
 public:
  // Once `stopped` is true, write throws Stopped.
  struct Stopped {};
  explicit HeldOutput(const std::atomic<bool> *stopped) : stopped_(*stopped) {}

  void write(std::string_view bytes) override;
  void complain(std::string_view text) override;

  // Gives all to another output, in the order in which it came.
  void deliver(FileOutput *to) const;

 private:
  const std::atomic<bool> &stopped_;
  SpoolFile bytes_;
  SpoolFile complaints_;  // each behind its Mark
};

}  // namespace px

#endif

// A file that is written beside its place and takes it when it is whole. Until then, and when
// anything fails, what was there stays.

#ifndef PX_HOST_COMMAND_OUTPUT_FILE_H
#define PX_HOST_COMMAND_OUTPUT_FILE_H

#include <string>

#include "host/io/file_descriptor.h"

namespace px {

// The members throw std::system_error, with the file's name, when they fail.
class OutputFile {
 public:
  // A link is followed. What isn't a regular file, such as a device or a pipe, is written to
  // itself.
  explicit OutputFile(const std::string &name);
  ~OutputFile();  // takes back what wasn't committed
  OutputFile(const OutputFile &) = delete;
  OutputFile &operator=(const OutputFile &) = delete;

  int number() const { return file_.number(); }

  void commit();

 private:
  const std::string name_;   // as it was given
  const std::string place_;  // behind links
  std::string temporary_;    // empty: written in place, or committed
  FileDescriptor file_;
};

}  // namespace px

#endif

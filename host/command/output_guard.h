// Keeps a file that is read from being written over.

#ifndef PX_HOST_COMMAND_OUTPUT_GUARD_H
#define PX_HOST_COMMAND_OUTPUT_GUARD_H

#include <sys/stat.h>

#include <optional>
#include <string>

#include "host/command/options.h"

namespace px {

// A file or a folder, by whatever name it goes.
struct FileIdentity {
  dev_t device;
  ino_t number;
  bool operator==(const FileIdentity &) const = default;
};

// Nothing where there is none.
std::optional<FileIdentity> identityOf(const std::string &path);

class OutputGuard {
 public:
  // Looks at what `options` write to: a file or standard output, and the folder for objects. So it
  // is made before any of that is opened for writing.
  explicit OutputGuard(const Options &options);

  // Throw UsageError where an input is one of them: "-" is standard input. The second asks for all
  // that `options` name.
  void check(const std::string &input) const;
  void checkNamed(const Options &options) const;

 private:
  std::optional<FileIdentity> file_, folder_;
};

}  // namespace px

#endif

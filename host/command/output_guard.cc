#include "host/command/output_guard.h"

#include <unistd.h>

#include "host/command/messages.h"
#include "host/languages/translation.h"

namespace px {
namespace {

// Devices and sockets are read and written at the same time without harm.
std::optional<FileIdentity> identityOf(int answer, const struct stat &status) {
  if (answer != 0 || S_ISCHR(status.st_mode) || S_ISSOCK(status.st_mode)) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

std::optional<FileIdentity> identityOf(int file) {
  struct stat status {};
  return identityOf(fstat(file, &status), status);
}

}  // namespace

std::optional<FileIdentity> identityOf(const std::string &path) {
  struct stat status {};
  return identityOf(stat(path.c_str(), &status), status);
}

OutputGuard::OutputGuard(const Options &options)
    : file_(options.output.empty() ? identityOf(STDOUT_FILENO) : identityOf(options.output)) {
  if (!options.directory.empty()) folder_ = identityOf(options.directory);
}

void OutputGuard::check(const std::string &input) const {
  const auto identity = input == "-" ? identityOf(STDIN_FILENO) : identityOf(input);
  if (!identity || (identity != file_ && identity != folder_)) return;
  throw UsageError(displayName(input) + ": " + std::string(tr("is the output as well")));
}

void OutputGuard::checkNamed(const Options &options) const {
  if (!options.files0From.empty()) check(options.files0From);
  for (const std::string &file : options.files) check(file);
}

}  // namespace px

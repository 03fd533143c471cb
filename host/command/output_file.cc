#include "host/command/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

namespace px {
namespace {

[[noreturn]] void fail(const std::string &name) {
  throw std::system_error(errno, std::generic_category(), name);
}

std::string behindLinks(const std::string &name) {
  struct Free {
    void operator()(char *text) const { std::free(text); }
  };
  const std::unique_ptr<char, Free> real(realpath(name.c_str(), nullptr));
  return real ? real.get() : name;
}

// What a new file of the user's gets.
mode_t usualMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// A program that is interrupted takes its temporary file with it.
char interrupted[PATH_MAX];

void removeAndEnd(int signal) {
  unlink(interrupted);
  raise(signal);  // whose usual action is back
}

void removeWhenInterrupted(const std::string &file) {
  if (file.size() >= sizeof interrupted) return;
  std::memcpy(interrupted, file.c_str(), file.size() + 1);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    struct sigaction now {};
    if (sigaction(signal, nullptr, &now) != 0 || now.sa_handler == SIG_IGN) continue;
    now = {};
    now.sa_handler = removeAndEnd;
    now.sa_flags = SA_RESETHAND;
    sigaction(signal, &now, nullptr);
  }
}

}  // namespace

OutputFile::OutputFile(const std::string &name) : name_(name), place_(behindLinks(name)) {
  struct stat status;
  const bool exists = stat(place_.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) {
    file_ = FileDescriptor(open(place_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (!file_.isOpen()) fail(name_);
    return;
  }
  // What may not be written in place isn't replaced either.
  if (exists && access(place_.c_str(), W_OK) != 0) fail(name_);
  const std::filesystem::path path(place_);
  std::string temporary = path.parent_path() / ".pxcard-XXXXXX";
  file_ = FileDescriptor(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file_.isOpen()) fail(name_);
  temporary_ = temporary;
  removeWhenInterrupted(temporary);
  fchmod(file_.number(), exists ? status.st_mode & 07777 : usualMode());
}

OutputFile::~OutputFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void OutputFile::commit() {
  if (temporary_.empty()) return;
  // The new content is on the disk before the old one goes.
  if (fsync(file_.number()) != 0 || rename(temporary_.c_str(), place_.c_str()) != 0) fail(name_);
  temporary_.clear();
  interrupted[0] = '\0';
}

}  // namespace px

#include "host/saving/save_directory.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <system_error>
#include <utility>

#include "host/source/utf8.h"

namespace px {
namespace {

constexpr size_t kMaxName = 255;
constexpr std::string_view kReplacement = "\uFFFD";

[[noreturn]] void fail(int error, const std::string &file) {
  throw std::system_error(error, std::generic_category(), file);
}

FileDescriptor openDirectory(const std::string &path) {
  if (mkdir(path.c_str(), 0777) != 0 && errno != EEXIST) fail(errno, path);
  FileDescriptor directory(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.isOpen()) fail(errno, path);
  return directory;
}

// Cuts valid UTF-8 to `size` bytes at most, between characters.
void cut(std::string *utf8, size_t size) {
  if (utf8->size() <= size) return;
  while (size > 0 && ((*utf8)[size] & 0xC0) == 0x80) --size;
  utf8->resize(size);
}

std::string numbered(std::string name, std::string_view extension, uint32_t number) {
  const std::string tail = "-" + std::to_string(number) + std::string(extension);
  name.resize(name.size() - extension.size());
  cut(&name, kMaxName - tail.size());
  return name + tail;
}

// The number tried last for a name is kept in a table by the name's hash, so that equal names cost
// no quadratic time and very many different ones no memory. Names that share an entry leave gaps in
// each other's numbers. Names that are alike up to where they are cut share one always.
constexpr size_t kNumbers = 1 << 16;

size_t numberIndex(std::string name) {
  cut(&name, kMaxName / 2);
  return std::hash<std::string>()(name) % kNumbers;
}

}  // namespace

std::string safeFileName(std::string_view text, std::string_view extension) {
  text.remove_prefix(text.find_last_of("/\\") + 1);
  std::string name;
  appendPrintable(text, &name);
  for (size_t at; (at = name.find(kReplacement)) != name.npos;) {
    name.replace(at, kReplacement.size(), "_");
  }
  if (name.ends_with(extension)) name.resize(name.size() - extension.size());
  name.erase(0, name.find_first_not_of(". -"));
  cut(&name, kMaxName - extension.size());
  name.resize(name.find_last_not_of(". ") + 1);
  return name.empty() ? name : name.append(extension);
}

void SaveDirectory::begin() {
  abandon();
  if (!directory_.isOpen()) directory_ = openDirectory(path_);
  std::string name;
  uint32_t attempt = 0;
  do {
    name = "." + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".part";
    file_ = openat(directory_.number(), name.c_str(),
                   O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  } while (file_ < 0 && errno == EEXIST && ++attempt < 1000);
  if (file_ < 0) fail(errno, path_);
  temporary_ = name;
}

void SaveDirectory::write(const void *bytes, size_t size) {
  const char *next = static_cast<const char *>(bytes);
  while (size > 0) {
    const ssize_t written = ::write(file_, next, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail(errno, path_);
    next += written;
    size -= static_cast<size_t>(written);
  }
}

std::string SaveDirectory::commit(const std::string &name, const std::string &neutral,
                                  std::string_view extension) {
  // Some file systems report a full disk no earlier than this.
  if (close(std::exchange(file_, -1)) != 0) fail(errno, path_);

  std::string taken = name;
  // Which characters, lengths and words a file system refuses, and how, is its own affair.
  if (name.empty() || place(&taken, extension) != 0) {
    taken = neutral;
    if (const int error = place(&taken, extension)) fail(error, path_ + "/" + neutral);
  }
  temporary_.clear();
  return taken;
}

// Gives the file the name, with a number where it is taken. Answers 0, or the errno of a refusal.
int SaveDirectory::place(std::string *name, std::string_view extension) {
  int error = rename(*name);
  if (error != EEXIST) return error;
  if (lastNumber_.empty()) lastNumber_.resize(kNumbers, 1);
  uint32_t &number = lastNumber_[numberIndex(*name)];
  std::string taken;
  do {
    taken = numbered(*name, extension, ++number);
    error = rename(taken);
  } while (error == EEXIST && number < UINT32_MAX);
  *name = taken;
  return error;
}

// Answers 0, EEXIST when the name is taken, or the errno of another failure.
int SaveDirectory::rename(const std::string &name) {
  const int directory = directory_.number();
  if (renameat2(directory, temporary_.c_str(), directory, name.c_str(), RENAME_NOREPLACE) == 0) {
    return 0;
  }
  // Some file systems have no such rename; a link doesn't overwrite either.
  if (errno == EINVAL || errno == ENOSYS) {
    if (linkat(directory, temporary_.c_str(), directory, name.c_str(), 0) == 0) {
      unlinkat(directory, temporary_.c_str(), 0);
      return 0;
    }
  }
  return errno;
}

void SaveDirectory::abandon() {
  if (temporary_.empty()) return;
  if (file_ >= 0) close(std::exchange(file_, -1));
  unlinkat(directory_.number(), temporary_.c_str(), 0);
  temporary_.clear();
}

}  // namespace px

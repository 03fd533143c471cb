#include "host/save_directory.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "host/character_sets.h"

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

// `number` 1 stands for the plain name.
std::string numbered(const std::string &name, std::string_view extension, uint64_t number) {
  if (number == 1) return name;
  const std::string tail = "-" + std::to_string(number) + std::string(extension);
  std::string result = name.substr(0, name.size() - extension.size());
  cut(&result, kMaxName - tail.size());
  return result + tail;
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

SaveDirectory::SaveDirectory(const std::string &path)
    : path_(path), directory_(openDirectory(path)) {}

void SaveDirectory::begin() {
  abandon();
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

std::string SaveDirectory::commit(const std::string &name, std::string_view extension) {
  // Some file systems report a full disk no earlier than this.
  if (close(std::exchange(file_, -1)) != 0) fail(errno, path_);

  // Numbers go up one by one as long as a person may count, and then in leaps, so that a file with
  // very many equal titles costs no quadratic time.
  uint64_t number = 1;
  std::string taken = name;
  while (!rename(taken)) {
    number += number < 100 ? 1 : number / 8;
    taken = numbered(name, extension, number);
  }
  temporary_.clear();
  return taken;
}

// Answers false when the name is taken.
bool SaveDirectory::rename(const std::string &name) {
  const int directory = directory_.number();
  if (renameat2(directory, temporary_.c_str(), directory, name.c_str(), RENAME_NOREPLACE) == 0) {
    return true;
  }
  // Some file systems have no such rename; a link doesn't overwrite either.
  if (errno == EINVAL || errno == ENOSYS) {
    if (linkat(directory, temporary_.c_str(), directory, name.c_str(), 0) == 0) {
      unlinkat(directory, temporary_.c_str(), 0);
      return true;
    }
  }
  if (errno != EEXIST) fail(errno, path_ + "/" + name);
  return false;
}

void SaveDirectory::abandon() {
  if (temporary_.empty()) return;
  if (file_ >= 0) close(std::exchange(file_, -1));
  unlinkat(directory_.number(), temporary_.c_str(), 0);
  temporary_.clear();
}

}  // namespace px

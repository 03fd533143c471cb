#include "host/command/inputs.h"

#include <strings.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <system_error>

#include "host/command/output_guard.h"
#include "host/languages/translation.h"

namespace px {
namespace {

constexpr const char *kExtensions[] = {".vcf", ".vcard", ".vcs", ".ics"};

bool isFolder(const std::string &name) {
  struct stat status;
  return stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isRegular(const char *name) {
  struct stat status;
  return stat(name, &status) == 0 && S_ISREG(status.st_mode);
}

bool hasExtension(const char *name) {
  const char *dot = std::strrchr(name, '.');
  for (const char *extension : kExtensions) {
    if (dot && strcasecmp(dot, extension) == 0) return true;
  }
  return false;
}

int byName(const FTSENT **a, const FTSENT **b) {
  return std::strcmp((*a)->fts_name, (*b)->fts_name);
}

std::string systemText(int error) {
  return std::string(tr(std::generic_category().message(error)));
}

}  // namespace

bool InputList::isSingle() const {
  return options_.files0From.empty() && options_.files.size() == 1 &&
         !(options_.recursive && isFolder(options_.files[0]));
}

bool InputList::next(Input *input) {
  for (;;) {
    *input = {};
    if (walk_) {
      if (nextBelow(input)) return true;
      continue;
    }
    if (!nextName(input)) return false;
    if (!input->fault.empty() || input->name == "-" || !options_.recursive) return true;
    if (!isFolder(input->name)) return true;
    beginWalk(input->name);
    if (walk_) continue;
    input->fault = systemText(errno);
    return true;
  }
}

bool InputList::nextName(Input *input) {
  if (options_.files0From.empty()) {
    if (argument_ == options_.files.size()) return false;
    input->name = options_.files[argument_++];
    return true;
  }
  if (namesEnded_) return false;
  const bool isStandardInput = options_.files0From == "-";
  char *name = nullptr;
  size_t room = 0;
  errno = 0;
  if (!names_) {
    names_.reset(isStandardInput ? fdopen(dup(STDIN_FILENO), "r")
                                 : fopen(options_.files0From.c_str(), "re"));
  }
  const ssize_t length = names_ ? getdelim(&name, &room, '\0', names_.get()) : -1;
  const int error = errno;
  if (length > 0) input->name.assign(name, static_cast<size_t>(length));
  std::free(name);
  if (length > 0) {
    if (input->name.back() == '\0') input->name.pop_back();
    if (input->name.empty()) {
      input->name = options_.files0From;
      input->fault = tr("holds an empty name; each name ends with one zero byte");
    } else if (input->name == "-" && isStandardInput) {
      input->fault = tr("gives the names of files, so it can't be read as one");
    }
    return true;
  }
  namesEnded_ = true;
  if (names_ && !ferror(names_.get())) return false;
  input->name = options_.files0From;
  input->fault = systemText(error);
  return true;
}

void InputList::beginWalk(const std::string &folder) {
  std::string path = folder;
  char *paths[] = {path.data(), nullptr};
  folder_ = folder;
  foundAny_ = false;
  // Nothing else would keep the working folder as it is, which other threads go by.
  walk_.reset(fts_open(paths, FTS_PHYSICAL | FTS_COMFOLLOW | FTS_NOCHDIR, byName));
}

bool InputList::nextBelow(Input *input) {
  errno = 0;
  FTSENT *entry = fts_read(walk_.get());
  const int error = errno;
  if (!entry) {
    walk_.reset();
    input->name = folder_;
    if (error != 0) {
      input->fault = systemText(error);
    } else if (!foundAny_) {
      input->fault = tr("holds no file named .vcf, .vcard, .vcs or .ics");
    }
    return !input->fault.empty();
  }
  input->name = entry->fts_path;
  switch (entry->fts_info) {
    case FTS_DNR:
    case FTS_ERR:
    case FTS_NS:
      foundAny_ = true;
      input->fault = systemText(entry->fts_errno);
      return true;
    case FTS_D:
      // What is saved is not read.
      if (!options_.directory.empty() &&
          identityOf(entry->fts_path) == identityOf(options_.directory)) {
        fts_set(walk_.get(), entry, FTS_SKIP);
      }
      return false;
    case FTS_F:
      break;
    case FTS_SL:
      if (!isRegular(entry->fts_path)) return false;
      break;
    default:
      return false;
  }
  if (!hasExtension(entry->fts_name)) return false;
  foundAny_ = true;
  return true;
}

}  // namespace px

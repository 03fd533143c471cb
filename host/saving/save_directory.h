// A directory that takes files under names that strangers chose.

#ifndef PX_HOST_SAVING_SAVE_DIRECTORY_H
#define PX_HOST_SAVING_SAVE_DIRECTORY_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/io/file_descriptor.h"

namespace px {

// Makes a file name of at most 255 bytes out of valid UTF-8: the part behind the last slash or
// backslash, with "_" for each character that isn't printable, without dots and dashes at its head
// or dots and blanks at its end, and ending in `extension`, such as ".jpg" or empty. A name that is
// too long loses characters before the extension. Answers an empty name when nothing but the
// extension would be left.
std::string safeFileName(std::string_view text, std::string_view extension);

// The members throw std::system_error when they fail; its text names the file.
class SaveDirectory {
 public:
  // The directory is made when the first file is begun, if it isn't there; its parent must be.
  explicit SaveDirectory(std::string path) : path_(std::move(path)) {}
  ~SaveDirectory() { abandon(); }
  SaveDirectory(const SaveDirectory &) = delete;
  SaveDirectory &operator=(const SaveDirectory &) = delete;

  // Begins a file, under a hidden name of its own until it is whole. One that was begun before and
  // not committed is abandoned.
  void begin();
  void write(const void *bytes, size_t size);

  // Gives the file the name that safeFileName made of a title, or `neutral` where that name is
  // empty or the file system refuses it. When the name is taken, it gets a number before
  // `extension`: no file is overwritten. Answers the name.
  std::string commit(const std::string &name, const std::string &neutral,
                     std::string_view extension);

  // Removes the file that was begun and not committed, if there is one.
  void abandon();

 private:
  int place(std::string *name, std::string_view extension);
  int rename(const std::string &name);

  const std::string path_;
  FileDescriptor directory_;
  int file_ = -1;
  std::string temporary_;  // empty when no file is begun
  std::vector<uint32_t> lastNumber_;
};

}  // namespace px

#endif

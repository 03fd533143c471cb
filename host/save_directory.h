// A directory that takes files under names that strangers chose.

#ifndef PX_HOST_SAVE_DIRECTORY_H
#define PX_HOST_SAVE_DIRECTORY_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/file_descriptor.h"

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
  // Opens the directory, which is made when it isn't there; its parent must be.
  explicit SaveDirectory(const std::string &path);
  ~SaveDirectory() { abandon(); }
  SaveDirectory(const SaveDirectory &) = delete;
  SaveDirectory &operator=(const SaveDirectory &) = delete;

  // Begins a file, under a hidden name of its own until it is whole.
  void begin();
  void write(const void *bytes, size_t size);

  // Gives the file the name that safeFileName made, or the same with a number before `extension`
  // when that name is taken: no file is overwritten. Answers the name.
  std::string commit(const std::string &name, std::string_view extension);

  // Removes the file that was begun and not committed, if there is one.
  void abandon();

 private:
  bool rename(const std::string &name);

  const std::string path_;
  FileDescriptor directory_;
  int file_ = -1;
  std::string temporary_;  // empty when no file is begun
};

}  // namespace px

#endif

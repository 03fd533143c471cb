#include "host/io/beside_program.h"

#include <dlfcn.h>

#include <system_error>

namespace px {

std::filesystem::path besideProgram(const std::filesystem::path &file) {
  std::error_code none;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", none);
  return program.is_absolute() ? program.parent_path().parent_path() / file
                               : std::filesystem::path();
}

std::filesystem::path ownFile() {
  Dl_info own{};
  if (dladdr(reinterpret_cast<const void *>(&ownFile), &own) == 0) return {};
  const std::filesystem::path file = own.dli_fname;
  return file.is_absolute() ? file : std::filesystem::path();
}

}  // namespace px

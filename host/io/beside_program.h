// Files that belong to the program.

#ifndef PX_HOST_IO_BESIDE_PROGRAM_H
#define PX_HOST_IO_BESIDE_PROGRAM_H

#include <filesystem>

namespace px {

// Answers the place of a file in the tree that the program's bin/ stands in, such as
// "lib/libpx_vcrd.so": a build tree has all where the installed one has it. An empty path when the
// system doesn't tell where the program is.
std::filesystem::path besideProgram(const std::filesystem::path &file);

}  // namespace px

#endif

// Files that belong to the program.

#ifndef PX_HOST_IO_BESIDE_PROGRAM_H
#define PX_HOST_IO_BESIDE_PROGRAM_H

#include <filesystem>

namespace px {

// Answers the place of a file in the tree that the program's bin/ stands in, such as
// "lib/libpx_vcrd.so": a build tree has all where the installed one has it. An empty path when the
// system doesn't tell where the program is.
std::filesystem::path besideProgram(const std::filesystem::path &file);

// Answers the file that this code was loaded from: the program, or a library that it is part of. An
// empty path when that isn't known by its whole path: what is named from the current folder isn't
// looked at.
std::filesystem::path ownFile();

}  // namespace px

#endif

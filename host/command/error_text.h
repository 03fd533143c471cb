// Errors and faults in words, in the language chosen.

#ifndef PX_HOST_COMMAND_ERROR_TEXT_H
#define PX_HOST_COMMAND_ERROR_TEXT_H

#include <exception>
#include <string>

namespace px {

std::string errorText(const std::exception &error);

// What the reader has told of a line.
std::string faultText(const std::string &english);

}  // namespace px

#endif

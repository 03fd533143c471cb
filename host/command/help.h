// What pxcard --help says.

#ifndef PX_HOST_COMMAND_HELP_H
#define PX_HOST_COMMAND_HELP_H

#include <string>

namespace px {

// In the language chosen.
std::string helpText();

}  // namespace px

#endif

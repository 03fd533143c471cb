// How shells complete the command's options, made of the option table.

#ifndef PX_HOST_COMMAND_COMPLETION_H
#define PX_HOST_COMMAND_COMPLETION_H

#include <string>
#include <string_view>

namespace px {

// Answers a script for "bash", "zsh" or "fish". In English, as it is installed.
std::string completionScript(std::string_view shell);

}  // namespace px

#endif

// What the command's exit codes mean.

#ifndef PX_HOST_COMMAND_EXIT_CODE_H
#define PX_HOST_COMMAND_EXIT_CODE_H

#include "host/languages/translation.h"

namespace px {

enum ExitCode { ExitGood = 0, ExitFailed = 1, ExitUsage = 2 };

struct ExitCodeText {
  ExitCode code;
  const char *text;
};

inline constexpr ExitCodeText kExitCodes[] = {
    {ExitGood, N_("all went well")},
    {ExitFailed, N_("something could not be read, saved or written; all that could be is there")},
    {ExitUsage, N_("wrong use of the command; nothing was done")},
};

}  // namespace px

#endif

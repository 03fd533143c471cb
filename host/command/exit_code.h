// What the command's exit codes mean.

#ifndef PX_HOST_COMMAND_EXIT_CODE_H
#define PX_HOST_COMMAND_EXIT_CODE_H

#include "host/languages/translation.h"

namespace px {

// The higher, the worse: of several files the worst counts.
enum ExitCode { ExitGood = 0, ExitFaults = 1, ExitUsage = 2, ExitFailed = 3 };

struct ExitCodeText {
  ExitCode code;
  const char *text;
};

inline constexpr ExitCodeText kExitCodes[] = {
    {ExitGood, N_("all was read")},
    {ExitFaults, N_("all files were read, with faults in them, which are told")},
    {ExitUsage, N_("wrong use of the command; nothing was replaced")},
    {ExitFailed, N_("a file, or the rest of it, could not be read or holds no card, or the output "
                    "failed; all else is there")},
};

}  // namespace px

#endif

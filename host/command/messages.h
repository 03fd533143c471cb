// Standard error: messages for the person, and below them a line that tells how far the work is.
// Any thread may call.

#ifndef PX_HOST_COMMAND_MESSAGES_H
#define PX_HOST_COMMAND_MESSAGES_H

#include <string>
#include <string_view>

namespace px {

// Arguments and messages come from anywhere, so they are shown without what would drive the
// terminal.
std::string printable(std::string_view text);

// What a file is called: "card.vcf", "standard input".
std::string displayName(const std::string &file);

// Writes "pxcard: TEXT".
void complain(std::string_view text);

// Shows the line in place of the last one, on a terminal; an empty one erases it.
void showStatus(std::string_view line);

}  // namespace px

#endif

// Dates and times as a person reads them, in the language chosen.

#ifndef PX_HOST_WRITERS_DATES_H
#define PX_HOST_WRITERS_DATES_H

#include <optional>
#include <string>
#include <string_view>

namespace px {

// The longest text that can be a date, in bytes.
constexpr size_t LongestDate = 48;

// Answers the readable form of a date, a time or both, in their basic or their extended form:
//
//     20240302T170455Z           2024-03-02 17:04:55 UTC
//     2024-03-02T17:00:00+01:00  2024-03-02 17:00 +01:00     seconds that are 0 are left out
//     --0302                     2 March
//     T1022                      10:22
//
// A date of the year `omitted`, if there is one, reads as a date without a year. Nothing for any
// other text.
std::optional<std::string> readableDate(std::string_view text, std::string_view omitted = {});

}  // namespace px

#endif

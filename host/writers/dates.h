// Dates and times as a person reads them, in the language chosen.

#ifndef PX_HOST_WRITERS_DATES_H
#define PX_HOST_WRITERS_DATES_H

#include <cstddef>
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

// Answers where the date ends that a value begins with: dates come alone, in lists and in pairs.
size_t dateEnd(std::string_view value);

// Answers the readable form of a length of time: "PT1H30M" is "1 h 30 min", "-P1D" is "1 d",
// without its sign. Nothing for any other text.
std::optional<std::string> readableDuration(std::string_view text);

// Answers the form for programs of what readableDate wrote, "2024-03-02T17:04:55Z"; an empty text
// for a date without a year or without a month.
std::string machineDate(std::string_view readable);

// Answers "Thursday, 18 April 2024" for "2024-04-18"; the text itself when it is no day.
std::string dayInWords(std::string_view day);

// Answers "2024-04-17" for "2024-04-18"; the text itself when it is no day.
std::string dayBefore(std::string_view day);

}  // namespace px

#endif

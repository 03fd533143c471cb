// Small elements of a page that stand in more places than one.

#ifndef PX_HOST_WRITERS_HTML_ELEMENTS_H
#define PX_HOST_WRITERS_HTML_ELEMENTS_H

#include <string>
#include <string_view>

namespace px {

// A date or a length of time: `text` for people, `machine` for programs, of the class `name`. Both
// can be empty.
std::string timeElement(std::string_view text, std::string_view machine, std::string_view name);

// The zone behind a time, with a blank; nothing for an empty one.
std::string zoneElement(std::string_view zone);

std::string tagElement(std::string_view text);

// An answer or a state, "NEEDS-ACTION", as a tag in words, coloured by what it means.
std::string stateElement(std::string_view value);

// The part that somebody takes, "REQ-PARTICIPANT", in words.
std::string roleInWords(std::string_view role);

}  // namespace px

#endif

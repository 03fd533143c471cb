// Events for writers from a script, a line each:
//
//     [VEVENT 2 1 2.0]                           section: component ("-": none), number, partOf,
//     version Telephone/home,work: 555-0100              summary line: kind/types: text 79406
//     item1.TEL;TYPE=home,work: 555-0100   property: label id, group.name;parameters: value 79399
//     N: 79412=Family|79413=Given          fields behind their label ids 79402 PHOTO: <me.jpg>bytes
//     object: title and content
//
// "\n" in a text is a line break, (...) behind a group's name its label. What stands in TYPE is the
// property's types too. A line "late ROLE=CHAIR" adds a late parameter to the property above it.
// Text comes in pieces of `piece` characters. Cards and properties are 1000 bytes long and stand at
// 100.

#ifndef PX_TESTS_SUPPORT_SCRIPTED_EVENTS_H
#define PX_TESTS_SUPPORT_SCRIPTED_EVENTS_H

#include <string>
#include <string_view>

#include "host/reading/card_events.h"

namespace px::test {

void play(std::string_view script, size_t piece, CardEvents *to);

// Calls the content image/jpeg that begins with "J", else text/plain.
std::string scriptedContentType(const void *bytes, size_t size);

}  // namespace px::test

#endif

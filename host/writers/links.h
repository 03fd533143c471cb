// Which texts of a card are links.

#ifndef PX_HOST_WRITERS_LINKS_H
#define PX_HOST_WRITERS_LINKS_H

#include <string>
#include <string_view>

namespace px {

// Answer the address to link to, or an empty text when the value is none. An address has one of
// the schemes http, https, mailto, tel, sms and geo, and no blanks and no control characters.

// Of a value that is an address as it stands.
std::string addressOf(std::string_view value);

// Of a telephone number, "+1 202 555-0140" or "tel:+1-202-555-0140".
std::string telephoneAddressOf(std::string_view value);

// Of a mail address, "ann@example.org", "Ann <ann@example.org>" or "mailto:ann@example.org".
std::string mailAddressOf(std::string_view value);

}  // namespace px

#endif

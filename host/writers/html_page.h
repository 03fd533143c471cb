// What stands around the cards of an HTML page: head, style, the filter box and its script.

#ifndef PX_HOST_WRITERS_HTML_PAGE_H
#define PX_HOST_WRITERS_HTML_PAGE_H

#include <string_view>

#include "host/writers/html_text.h"

namespace px {

// The page needs nothing from elsewhere, and its policy lets it fetch nothing: style and script are
// allowed by their hashes, pictures and sounds as data in the page. It is whole without the script.
void putPageBegin(std::string_view title, HtmlStream *html);
void putPageEnd(HtmlStream *html);

}  // namespace px

#endif

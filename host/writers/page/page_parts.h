// The style sheet and the script of the HTML page, which stand in files of their own beside this.

#ifndef PX_HOST_WRITERS_PAGE_PAGE_PARTS_H
#define PX_HOST_WRITERS_PAGE_PAGE_PARTS_H

#include <string_view>

namespace px {

extern const std::string_view pageStyle;
extern const std::string_view pageScript;

}  // namespace px

#endif

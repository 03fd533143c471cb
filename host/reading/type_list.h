// How a list of types or parameters stands among the calls: as strings of its own.

#ifndef PX_HOST_READING_TYPE_LIST_H
#define PX_HOST_READING_TYPE_LIST_H

#include <string_view>

namespace px {

constexpr std::string_view TypesBegin = "        ( ";
constexpr std::string_view ParametersBegin = " ( ";
constexpr std::string_view ListEnd = " )";

}  // namespace px

#endif

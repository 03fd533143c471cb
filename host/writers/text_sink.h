#ifndef PX_HOST_WRITERS_TEXT_SINK_H
#define PX_HOST_WRITERS_TEXT_SINK_H

#include <functional>
#include <string_view>

namespace px {

// Takes a piece of text, and may throw when it couldn't be written: what called the writer passes
// that on.
using TextSink = std::function<void(std::string_view text)>;

}  // namespace px

#endif

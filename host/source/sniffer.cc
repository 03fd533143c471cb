#include "host/source/sniffer.h"

#include <string_view>

#include "host/io/open_io.h"
#include "px/vcrd.h"

namespace px {

// White space can stand before, inside and behind both words of the line, folds included, so the
// text is compared without any. That takes some more texts for a calendar than the filter will;
// those it refuses under either format.
int16_t sniffFormat(VcardIo *io) {
  constexpr std::string_view head = "begin:vcalendar";
  constexpr uint64_t farthest = 64 * 1024;
  char buffer[2048];
  size_t matched = 0;
  uint64_t position = 0;
  while (position < farthest) {
    uint32_t count = 0;
    if (readIoAt(io, position, buffer, sizeof buffer, &count) != 0 || count == 0) break;
    position += count;
    for (const char c : std::string_view(buffer, count)) {
      if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
      const bool upper = c >= 'A' && c <= 'Z';
      if ((upper ? c - 'A' + 'a' : c) != head[matched]) return VcardFormatVcard;
      if (++matched == head.size()) return VcardFormatVcalendar;
    }
  }
  return VcardFormatVcard;
}

}  // namespace px

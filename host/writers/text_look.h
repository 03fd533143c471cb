// What the writers of plain text share: the width of lines, and where things stand in them.

#ifndef PX_HOST_WRITERS_TEXT_LOOK_H
#define PX_HOST_WRITERS_TEXT_LOOK_H

#include <algorithm>
#include <cstdint>

namespace px {

struct TextLook {
  static constexpr uint32_t Endless = 0;       // a width: lines aren't wrapped
  static constexpr uint32_t Narrowest = 40;    // a smaller width counts as this
  static constexpr uint32_t ValueColumn = 26;  // where values begin, counted from 0
  static constexpr uint32_t Gap = 2;           // columns between a label and its value

  uint32_t width = 80;  // of a line, in columns
  bool color = false;   // bold and dim text, by escape sequences

  // The width that lines are wrapped to.
  uint32_t columns() const { return width == Endless ? UINT32_MAX : std::max(width, Narrowest); }

  // The length of the rules between parts.
  uint32_t ruleLength() const { return std::min(columns(), uint32_t{72}); }
};

}  // namespace px

#endif

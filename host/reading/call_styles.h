// What the filter's styles mean, told by their definitions: a height makes a heading of the
// summary, italics make a sub-label, and a label is bold.

#ifndef PX_HOST_READING_CALL_STYLES_H
#define PX_HOST_READING_CALL_STYLES_H

#include <cstdint>
#include <vector>

#include "px/output_routines.h"

namespace px {

enum class StyleRole : uint8_t { None, Paragraph, Label, SubLabel, Plain, Heading };

class CallStyles {
 public:
  // What comes in a definition, in the order of the calls.
  void begin(const VcardStyleDef &definition);
  void setCharHeight(uint32_t height) { defined_.height = height; }
  void setAttribute(uint32_t kind, uint32_t attribute, uint32_t value);
  void end(uint32_t id);

  void clear() { styles_.clear(); }

  StyleRole role(uint32_t id) const {
    return id < styles_.size() ? styles_[id].role : StyleRole::None;
  }
  // How many headings are larger than this one.
  uint32_t headingLevel(uint32_t id) const;

 private:
  struct Style {
    StyleRole role = StyleRole::None;
    uint32_t height = 0;
    bool bold = false;
    bool italic = false;
  };

  std::vector<Style> styles_;
  Style defined_;
};

}  // namespace px

#endif

#include "host/reading/call_styles.h"

namespace px {
namespace {

// Attributes of a style: those of a font, and which of them.
constexpr uint32_t kFontAttribute = 8;
constexpr uint32_t kBold = 2;
constexpr uint32_t kItalic = 3;

}  // namespace

void CallStyles::begin(const VcardStyleDef &definition) {
  defined_ = Style();
  if (definition.StyleDefKind == 1) defined_.role = StyleRole::Paragraph;
}

void CallStyles::setAttribute(uint32_t kind, uint32_t attribute, uint32_t value) {
  if (kind != kFontAttribute) return;
  if (attribute == kBold) defined_.bold = value != 0;
  if (attribute == kItalic) defined_.italic = value != 0;
}

void CallStyles::end(uint32_t id) {
  constexpr uint32_t most = 64;
  if (id >= most) return;
  if (defined_.role != StyleRole::Paragraph) {
    defined_.role = defined_.height > 0 ? StyleRole::Heading
                    : defined_.italic   ? StyleRole::SubLabel
                    : defined_.bold     ? StyleRole::Label
                                        : StyleRole::Plain;
  }
  if (styles_.size() <= id) styles_.resize(id + 1);
  styles_[id] = defined_;
}

uint32_t CallStyles::headingLevel(uint32_t id) const {
  uint32_t level = 0;
  for (const Style &style : styles_) {
    if (style.role == StyleRole::Heading && style.height > styles_[id].height) ++level;
  }
  return level;
}

}  // namespace px

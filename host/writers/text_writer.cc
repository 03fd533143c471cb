#include "host/writers/text_writer.h"

#include <algorithm>

#include "host/labels/label_texts.h"

namespace px {
namespace {

constexpr uint32_t kValueColumn = 26;
constexpr uint32_t kGap = 2;  // between the label column and the values
constexpr uint32_t kRuleLength = 72;
constexpr uint32_t kListIndent = 8;  // most blanks before the parenthesis of a list

// Attributes of a style that tell the label styles apart.
constexpr uint32_t kFontAttribute = 8;
constexpr uint32_t kItalic = 3;

std::string withThousands(uint64_t number) {
  std::string digits = std::to_string(number);
  for (size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, 1, ',');
  return digits;
}

}  // namespace

void TextWriter::finish() {
  endRun();
  endParagraph();
  lines_.flush();
}

// Styles. The definitions say which is which: a height makes a heading of the summary, italics
// make a sub-label.

void TextWriter::beginDefinition(uint32_t type, uint32_t, const void *record) {
  endRun();
  if (type == SoDefinitionStyle) {
    defined_ = Style();
    defined_.paragraph = static_cast<const VcardStyleDef *>(record)->StyleDefKind == 1;
  } else if (type == SoDefinitionAttachment) {
    put("[");
    inTitle_ = true;
    titled_ = false;
  }
}

void TextWriter::setCharHeight(uint32_t height) { defined_.height = height; }

void TextWriter::setAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t) {
  if (a == kFontAttribute && b == kItalic) defined_.italic = c != 0;
}

void TextWriter::endDefinition(uint32_t type, uint32_t id) {
  endRun();
  if (type == SoDefinitionStyle) {
    styles_[id] = defined_;
    if (defined_.height > 0 && (smallestHeading_ == 0 || defined_.height < smallestHeading_)) {
      smallestHeading_ = defined_.height;
    }
  } else if (type == SoDefinitionAttachment) {
    if (titled_) put(": ");
    putDataNote();
    inTitle_ = false;
  }
}

void TextWriter::useStyle(uint32_t id) {
  endRun();
  const auto found = styles_.find(id);
  if (found == styles_.end()) return;
  const Style &style = found->second;
  if (style.paragraph) {
    beginProperty();
    return;
  }
  if (style.height > 0) headingHeight_ = style.height;
  inSubLabel_ = style.italic;
  if (inSubLabel_) subLabel_.clear();
}

// Sections and paragraphs.

void TextWriter::beginSection(uint32_t, uint32_t, uint32_t) {
  endRun();
  endParagraph();
  ruleDue_ = wroteAny_;
  wroteSummary_ = false;
  headingHeight_ = 0;
  place_ = Place::Summary;
}

bool TextWriter::emitBreak(uint32_t, uint32_t) {
  endRun();
  endParagraph();
  lines_.flush();
  return false;
}

void TextWriter::endParagraph() {
  if (paragraphOpen_) {
    widest_ = std::max(widest_, lines_.column());
    lines_.endLine();
    if (underline_) lines_.write(std::string(std::min(widest_, kRuleLength), '='));
    paragraphOpen_ = false;
  }
  lines_.endLine();
  breaks_ = tabs_ = 0;
  separator_ = inList_ = listEmpty_ = false;
  subLabel_.clear();
  if (place_ == Place::Value) place_ = Place::Label;
}

void TextWriter::beginProperty() {
  endParagraph();
  if (place_ == Place::Summary && wroteSummary_) {
    lines_.skipLine();
    lines_.write(std::string(kRuleLength, '-'));
    lines_.endLine();
  }
  place_ = Place::Label;
  labelExpected_ = true;
  label_ = {};
  inSubLabel_ = false;
}

// Text.

void TextWriter::setCharset(uint32_t set) {
  endRun();
  decoder_.setCharset(set, &decoded_);
  opening_ = Opening::Blanks;
  openingBlanks_ = 0;
}

void TextWriter::emitChar(uint16_t code) {
  if (takeListBracket(code)) return;
  decoder_.put(code, &decoded_);
  putDecoded();
}

// A list of types or parameters comes as strings of their own: "        ( " or " ( ", then the
// entries, then " )". Takes those brackets out of the text and notes what they mean.
bool TextWriter::takeListBracket(uint16_t code) {
  if (opening_ == Opening::None) return false;
  const bool canOpen = place_ == Place::Summary || (place_ == Place::Label && breaks_ + tabs_ == 0);
  if (canOpen && !inTitle_) {
    if (opening_ == Opening::Blanks && code == ' ' && openingBlanks_ < kListIndent) {
      ++openingBlanks_;
      return true;
    }
    if (opening_ == Opening::Blanks && code == '(' && openingBlanks_ > 0 && !inList_) {
      opening_ = Opening::Parenthesis;
      return true;
    }
    if (opening_ == Opening::Parenthesis && code == ' ') {
      opening_ = Opening::None;
      inList_ = listEmpty_ = true;
      return true;
    }
    if (opening_ == Opening::Blanks && code == ')' && openingBlanks_ > 0 && inList_) {
      opening_ = Opening::None;
      if (!listEmpty_) lines_.write(")");
      inList_ = listEmpty_ = separator_ = false;
      return true;
    }
  }
  endRun();
  return false;
}

// Puts out what waits for further characters: the string goes on differently or has ended.
void TextWriter::endRun() {
  const Opening opening = opening_;
  opening_ = Opening::None;
  if (opening != Opening::None && openingBlanks_ > 0) put(std::string(openingBlanks_, ' '));
  if (opening == Opening::Parenthesis) put("(");
  openingBlanks_ = 0;
  decoder_.finish(&decoded_);
  putDecoded();
}

void TextWriter::putDecoded() {
  if (decoded_.empty()) return;
  std::string printable;
  appendPrintable(decoded_, &printable);
  decoded_.clear();
  put(printable);
}

void TextWriter::emitResourceString(uint32_t id) {
  endRun();
  const std::string_view text = labelText(id);
  if (labelExpected_) label_ = text;
  labelExpected_ = false;
  put(text);
}

void TextWriter::emitSpecial(uint32_t kind) {
  endRun();
  if (inTitle_) return;
  if (kind == SoSpecialSeparator) {
    separator_ = true;
  } else if (kind == SoSpecialLineBreak) {
    ++breaks_;
    tabs_ = 0;
    separator_ = false;
    subLabel_.clear();
  } else if (kind == SoSpecialTab && !inSubLabel_) {
    ++tabs_;
  }
}

// Writes printable text at its place. All text goes this way.
void TextWriter::put(std::string_view utf8) {
  if (utf8.empty()) return;
  if (inSubLabel_) {
    subLabel_ += utf8;
    return;
  }
  moveToPlace();
  if (listEmpty_) {
    lines_.write(" (");
  } else if (separator_ && lines_.column() > 0) {
    lines_.write(inList_ ? ", " : " ");
  }
  listEmpty_ = separator_ = false;
  titled_ = inTitle_;
  lines_.write(utf8);
  wroteAny_ = true;
}

void TextWriter::moveToPlace() {
  if (ruleDue_) {
    lines_.skipLine();
    lines_.write(std::string(kRuleLength, '='));
    lines_.skipLine();
    ruleDue_ = false;
  }
  if (place_ == Place::Summary) {
    moveInSummary();
  } else {
    moveInListing();
  }
  breaks_ = tabs_ = 0;
}

void TextWriter::moveInSummary() {
  if (!paragraphOpen_) {
    // Title and organisation stand close to the name, the blocks in small print apart.
    const bool small = headingHeight_ == smallestHeading_;
    if (wroteSummary_ && small) lines_.skipLine();
    underline_ = !wroteSummary_ && !small;
    widest_ = 0;
    paragraphOpen_ = wroteSummary_ = true;
  } else if (breaks_ > 0) {
    widest_ = std::max(widest_, lines_.column());
    lines_.endLine();
  } else if (tabs_ > 0) {
    lines_.write(" ");
  }
}

void TextWriter::moveInListing() {
  if (!subLabel_.empty()) {
    lines_.endLine();
    const uint32_t columns = columnCount(subLabel_);
    const uint32_t room = kValueColumn - kGap;
    lines_.padTo(columns < room ? room - columns : 0);
    lines_.write(subLabel_);
    lines_.padTo(kValueColumn);
    subLabel_.clear();
    place_ = Place::Value;
  } else if (place_ == Place::Label) {
    if (breaks_ + tabs_ == 0) return;
    if (lines_.column() > kValueColumn - kGap) lines_.endLine();
    lines_.padTo(kValueColumn);
    place_ = Place::Value;
  } else if (breaks_ > 0) {
    lines_.endLine();
    for (uint32_t i = 1; i < breaks_; ++i) lines_.skipLine();
    lines_.padTo(kValueColumn);
  } else if (tabs_ > 0) {
    lines_.padTo(lines_.column() + 4 * tabs_);
  }
}

// Objects.

void TextWriter::setObjectData(uint32_t selector, uint64_t a, uint64_t b) {
  // An object's range reaches one byte past its text, an attachment's doesn't.
  if (selector == SoObjectDataRange) dataSize_ = b > 0 ? b - 1 : 0;
  if (selector == SoObjectDataExtent) dataSize_ = b - a;
}

void TextWriter::emitObject(const VcardObjectRecord &) {
  endRun();
  put("[");
  put(label_.empty() ? "Object" : label_);
  put(": ");
  putDataNote();
}

void TextWriter::putDataNote() {
  put("Base64 data, ");
  put(withThousands(dataSize_));
  put(" bytes of text]");
}

}  // namespace px

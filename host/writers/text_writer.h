// The plain text view of a card: what `pxcard` shows a person.
//
// The summary comes first, as a business card, its first paragraph underlined. Below a rule come
// the properties: the label on the left with its types in parentheses, the value in a column of its
// own, sub-labels right-aligned before that column. A heavier rule divides sections.
//
//     Ann Example
//     ===========
//     Boss
//
//     555-0100 (home)
//
//     ------------------------------------------------------------------------
//     Name                      Ann Example
//     Name parts
//                  Family name  Example
//                   Given name  Ann
//     Telephone (home)          555-0100
//     Photo                     [Photo: Base64 data, 27,004 bytes of text]
//
// The text is UTF-8 with LF line ends and without other control characters. It goes out in pieces
// of bounded size, at the latest at the end of each paragraph; nothing grows with the card.

#ifndef PX_HOST_WRITERS_TEXT_WRITER_H
#define PX_HOST_WRITERS_TEXT_WRITER_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "host/reading/character_decoder.h"
#include "host/writers/line_writer.h"
#include "host/filter/output.h"

namespace px {

class TextWriter : public Output {
 public:
  explicit TextWriter(TextSink sink) : lines_(std::move(sink)) {}

  // Writes what is still held, of a run that has ended short of a paragraph's end.
  void finish();

  void emitChar(uint16_t code) override;
  void emitSpecial(uint32_t kind) override;
  void setCharHeight(uint32_t height) override;
  bool emitBreak(uint32_t kind, uint32_t zero) override;
  void beginSection(uint32_t, uint32_t, uint32_t) override;
  void emitObject(const VcardObjectRecord &object) override;
  void beginDefinition(uint32_t type, uint32_t id, const void *record) override;
  void endDefinition(uint32_t type, uint32_t id) override;
  void setCharset(uint32_t set) override;
  void emitResourceString(uint32_t id) override;
  void useStyle(uint32_t id) override;
  void setAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t d) override;
  void setObjectData(uint32_t selector, uint64_t a, uint64_t b) override;

 private:
  struct Style {
    bool paragraph = false;
    bool italic = false;
    uint32_t height = 0;  // 0: not a heading
  };

  // Where the next character belongs.
  enum class Place { Nothing, Summary, Label, Value };

  // How far the string that began with the last setCharset reads like the opening of a list,
  // blanks, "(" and a blank, or like its end, a blank and ")".
  enum class Opening { None, Blanks, Parenthesis };

  void put(std::string_view utf8);
  void moveToPlace();
  void moveInSummary();
  void moveInListing();
  bool takeListBracket(uint16_t code);
  void endRun();
  void putDecoded();
  void endParagraph();
  void beginProperty();
  void putDataNote();

  LineWriter lines_;
  std::map<uint32_t, Style> styles_;
  Style defined_;                 // the style whose definition is open
  uint32_t smallestHeading_ = 0;  // height

  CharacterDecoder decoder_;
  std::string decoded_;
  Place place_ = Place::Nothing;
  uint32_t breaks_ = 0;  // line breaks and tabs that wait for text behind them
  uint32_t tabs_ = 0;
  bool separator_ = false;  // likewise a separator

  Opening opening_ = Opening::None;
  uint32_t openingBlanks_ = 0;
  bool inList_ = false;     // between the parentheses behind a label or a number
  bool listEmpty_ = false;  // and nothing is written yet, the parenthesis neither

  bool wroteAny_ = false;
  bool ruleDue_ = false;        // between this section and what stands above it
  bool wroteSummary_ = false;   // in this section
  bool paragraphOpen_ = false;  // of the summary: text has been written in it
  bool underline_ = false;      // the paragraph is to be underlined
  uint32_t headingHeight_ = 0;
  uint32_t widest_ = 0;  // columns of the paragraph's longest line

  bool labelExpected_ = false;  // the property's label comes next
  std::string_view label_;      // of the property
  bool inSubLabel_ = false;
  std::string subLabel_;  // waits for text behind it: an empty row isn't shown

  bool inTitle_ = false;  // of an attachment
  bool titled_ = false;
  uint64_t dataSize_ = 0;
};

}  // namespace px

#endif

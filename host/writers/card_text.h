// The plain text view of cards and calendars: what a person reads.
//
// The summary comes first, as a business card, its heading underlined. Below a rule come the
// properties: the label on the left with its types in parentheses, the value in a column of its
// own, sub-labels right-aligned before that column. An alarm is a block of sub-labels below its
// entry. A heavier rule divides sections.
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
//     Photo                     [Photo: JPEG image, 27,004 bytes]
//
// A row without a value isn't shown, nor are time zone definitions. The text is UTF-8 with LF line
// ends and without other control characters, those of the colours excepted. It goes out in pieces
// of bounded size; nothing grows with the card.

#ifndef PX_HOST_WRITERS_CARD_TEXT_H
#define PX_HOST_WRITERS_CARD_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/reading/card_events.h"
#include "host/writers/kept_heads.h"
#include "host/writers/object_content.h"
#include "host/writers/property_head.h"
#include "host/writers/text_look.h"
#include "host/writers/wrapped_lines.h"

namespace px {

class CardText : public CardEvents {
 public:
  CardText(const TextLook &look, ContentTypeOf contentTypeOf, TextSink sink);

  // Writes what is still held: to be called at the end of each file, also of one that ended short.
  // The sections that follow stand below a rule.
  void finish();

  void beginSection(const Section &section) override;
  void beginSummaryLine(SummaryKind kind, bool completed) override;
  void endSummaryLine(const std::vector<std::string> &types) override;
  void beginProperty(const Property &property) override;
  void beginField(uint32_t label) override;
  void text(std::string_view utf8) override;
  void lineBreak() override;
  void object(const PlacedObject &object) override;
  void lateParameter(const Parameter &parameter) override;
  void endProperty() override;
  void endSection() override;

 private:
  // Where text goes.
  enum class Place {
    Nowhere,
    Text,
    Date,  // held: it may be a date
    Last,  // held until the section's end
  };

  PropertyHead *changeHead();
  void put(std::string_view utf8);
  void putLines(std::string_view utf8);
  void holdDates(std::string_view utf8);
  void putHeld();
  void moveToSummary();
  void moveToValue();
  void beginSectionText();
  void beginListing();
  void writeSubLabel(std::string_view label);
  void writeStyled(std::string_view utf8, std::string_view sequence);
  void writeRule(char sign);

  const TextLook look_;
  const ContentTypeOf contentTypeOf_;
  WrappedLines lines_;

  bool inSection_ = false;
  bool wroteAny_ = false;
  bool ruleDue_ = false;       // between this section and what stands above it
  bool isShown_ = false;       // the section is
  bool isAlarm_ = false;       // it is a block of sub-labels
  bool alarmDue_ = false;      // whose heading isn't written yet
  bool hasSummary_ = false;    // its business card is shown
  bool wroteSummary_ = false;  // in part
  bool inListing_ = false;     // a property is written

  Place place_ = Place::Nowhere;
  std::string held_;
  bool separated_ = false;  // a date stands before the one that is held
  uint32_t breaks_ = 0;     // line breaks that wait for text behind them
  bool isOpen_ = false;     // text of the summary's line or of the row is written

  bool inSummary_ = false;
  SummaryKind kind_ = SummaryKind::Entry;
  SummaryKind lastKind_ = SummaryKind::Entry;  // of the line above
  bool divided_ = false;                       // an empty line of the address stands above
  bool underline_ = false;                     // the line is the heading

  KeptHeads<PropertyHead> heads_;
  const PropertyHead *head_;  // its label waits for a value
  PropertyHead ownHead_;      // one that is nobody else's
  bool labelWritten_ = false;
  std::string_view fieldLabel_;  // waits likewise
  std::vector<Row> last_;
};

}  // namespace px

#endif

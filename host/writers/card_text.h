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
#include "host/writers/object_content.h"
#include "host/writers/wrapped_lines.h"

namespace px {

struct TextLook {
  uint32_t width = 80;  // of a line, in columns; a small one counts as 40, Endless doesn't wrap
  bool color = false;   // bold and dim text, by escape sequences
};

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
    Summary,
    Value,
    Date,  // held until it is known to be a date or not
    Last,  // held until the section's end
  };

  // What is shown at the end of the section.
  struct LastRow {
    std::string label;
    std::string value;  // lines, each but the first behind a LF
  };

  void describe(const Property &property, std::string_view name);
  void rowFor(const Parameter &parameter);
  void beginBlock();
  void moveToSummary();
  void moveToValue();
  void writeLabel();
  void writeSubLabel(std::string_view label);
  void writeRow(std::string_view label, std::string_view value);
  void writeValue(std::string_view utf8);
  void writeDates();
  void writeLastRow(const LastRow &row);

  const uint32_t ruleLength_;
  const bool color_;
  const ContentTypeOf contentTypeOf_;
  WrappedLines lines_;

  bool wroteAny_ = false;
  bool ruleDue_ = false;       // between this section and what stands above it
  bool shown_ = false;         // the section is
  bool isAlarm_ = false;       // it is a block of sub-labels
  bool hasSummary_ = false;    // its business card is shown
  bool wroteSummary_ = false;  // some of it is written
  bool inListing_ = false;     // a property is written

  Place place_ = Place::Nowhere;
  uint32_t breaks_ = 0;  // line breaks that wait for text behind them
  SummaryKind kind_ = SummaryKind::Entry;
  SummaryKind lastKind_ = SummaryKind::Entry;  // of the line above
  bool lineOpen_ = false;                      // text of the summary line is written
  bool divided_ = false;                       // an empty line of the address stands above

  std::string label_;       // of the property, with its group's; waits for a value
  std::string types_;       // what follows it: " (home, voice)"
  std::string parameters_;  // likewise, of a property that px has no label for
  std::vector<std::string> rows_;
  bool labelWritten_ = false;
  bool valueOpen_ = false;  // text stands in the row
  std::string subLabel_;    // of the field; waits likewise
  std::string held_;        // of a date or of a last row
  std::string timeZone_;    // stands behind the date
  std::string omittedYear_;
  std::vector<LastRow> last_;
};

}  // namespace px

#endif

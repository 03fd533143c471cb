// Cards and calendars as one HTML page that needs nothing else.
//
//     HtmlWriter html(contentTypeOf, sink);
//     html.begin("all.vcf", severalFiles);
//     for each file:
//       html.beginFile(name);
//       the events of its sections, or error
//     html.end();
//
// A card is an article of class h-card: its head as on a business card, below it a row for each
// property that has a value. Photo and logo come among the properties, and the style sheet places
// them beside the head, so nothing waits for them. A calendar's entries are articles of class
// h-event under the headings of their days, each with its alarms; they wait in a spool until the
// calendar ends.
//
// Pictures, sounds and what can be downloaded are data in the page, written as they are read.
// Nothing in memory grows with a card, a file or the page; of a calendar's entry 32 bytes stay.

#ifndef PX_HOST_WRITERS_HTML_WRITER_H
#define PX_HOST_WRITERS_HTML_WRITER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/reading/card_events.h"
#include "host/writers/entries_by_day.h"
#include "host/writers/entry_head.h"
#include "host/writers/html_text.h"
#include "host/writers/object_content.h"
#include "host/writers/property_head.h"

namespace px {

class HtmlWriter : public CardEvents {
 public:
  HtmlWriter(ContentTypeOf contentTypeOf, TextSink sink);

  // Begins and ends the page over all files. With several of them each has a heading.
  void begin(std::string_view title, bool severalFiles);
  void end();

  // Names the file of the sections that follow. Names and messages are UTF-8.
  void beginFile(std::string_view name);

  // Tells on the page that a file, or the rest of it, couldn't be read. What is open is closed
  // before it.
  void error(std::string_view file, std::string_view message);

  // Gives all that was written to the sink, but for entries that wait.
  void flush() { html_.giveOut(); }

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
  enum class Kind { None, Hidden, Card, Calendar, Entry, Alarm };  // of a section

  // Where text goes.
  enum class Place { Nowhere, CardLine, EntryLine, Value };

  enum class Form { Text, Date, Duration, Telephone, Mail, Person };  // of a value

  enum class List { None, Fields, Tags };  // in a row

  // A card that others can stand in.
  struct Outer {
    uint32_t number = 0;
    uint64_t id = 0;
    std::string name;
  };

  static Kind kindOf(const Section &section);

  void openFile();
  void closeFile();
  void beginCard(const Section &section);
  void openHeading();
  void openContact(std::string_view list);
  void closeHead();
  void closeSection();
  void closeEntry();
  void giveEntries();
  void nameCalendar(std::string_view name);

  void beginValue(Place place, Form form);
  void endValue();
  void openValue();
  void closeValue();
  void putLines(std::string_view utf8);
  void putText(std::string_view utf8);
  void putHeld();
  void putLink(const std::string &address, std::string_view utf8);
  std::string_view timeClass() const;
  void putDuration(std::string_view utf8);
  void putDates(std::string_view utf8);
  void putPerson(std::string_view utf8);
  void openLine();
  void openRows();
  void closeRows();
  void openRow(std::string_view direction);
  void openList(List list);
  void closeList();
  void putRow(const Row &row);
  bool takeIntoHead();
  uint64_t putData(ContentReader *content, std::string_view before, std::string_view behind);
  uint64_t putPicture(ContentReader *content);
  void heading(uint32_t level, std::string_view attributes);

  const ContentTypeOf contentTypeOf_;
  const TextSink sink_;
  HtmlStream html_;

  // The page.
  uint32_t level_ = 2;  // of a card's heading
  std::string file_;
  bool several_ = false;
  bool fileOpen_ = false;
  uint64_t files_ = 0;
  uint64_t ids_ = 0;

  // The section.
  Kind kind_ = Kind::None;
  std::vector<Outer> outer_;  // the card and those around it
  bool headOpen_ = false;
  bool headed_ = false;       // its heading is written
  std::string_view contact_;  // what closes the part of the contact that is open
  bool contactOpen_ = false;
  bool hasPhoto_ = false, hasLogo_ = false;
  bool firstRows_ = true;
  bool rowsOpen_ = false;
  std::vector<Row> last_;  // written at its end
  bool entryOpen_ = false;
  EntryHead entry_;
  EntriesByDay entries_;

  // The property.
  bool inProperty_ = false;
  PropertyHead head_;
  std::string_view class_;  // of its value
  bool rowOpen_ = false;
  List list_ = List::None;
  uint32_t field_ = 0;  // its label
  bool inField_ = false;

  // The value, or the line of the head. What is short enough is held, so that a link, a date or a
  // person is seen in it.
  Place place_ = Place::Nowhere;
  Form form_ = Form::Text;
  SummaryKind lineKind_ = SummaryKind::Entry;
  std::string held_;
  bool streams_ = false;  // it was too long
  uint32_t breaks_ = 0;   // line breaks that wait for text behind them
  bool isOpen_ = false;
  std::string closing_;                 // what closes it
  std::string answer_, role_, called_;  // of a person
  bool replyWanted_ = false;
};

}  // namespace px

#endif

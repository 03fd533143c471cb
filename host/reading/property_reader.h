// A property's calls, read: its label, its types, and its value as text, fields or an object.
//
//     begin                                          the label's style
//     label 79406, or text "X-FOO"                   the label, or the name of an unknown property
//     style(Plain) text label separator ...          its types or parameters
//     lineBreak or tab, twice                        the value begins
//     text lineBreak ... style(SubLabel) label ...   the value, or its fields
//     end
//
// Where there are notes, the property is joined with the section's next line.

#ifndef PX_HOST_READING_PROPERTY_READER_H
#define PX_HOST_READING_PROPERTY_READER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/filter/filter_library.h"
#include "host/reading/call_styles.h"
#include "host/reading/card_events.h"
#include "host/source/line_notes.h"
#include "host/source/property_table.h"

namespace px {

class PropertyReader {
 public:
  // Nothing is owned. `notes` can be null.
  PropertyReader(const FilterLibrary &filter, CardEvents *events, LineNoteReader *notes)
      : filter_(filter), events_(*events), notes_(notes) {}

  void beginRun(int16_t format, VcardStream *stream);
  // `section` is of the section that begins, or null: nothing is joined.
  void beginSection(const SectionNote *section) { section_ = section; }

  // The calls, in their order. Without a property that has begun they do nothing.
  void begin();
  void style(StyleRole role);
  void beginString();
  void text(std::string_view utf8);
  void label(uint32_t id);
  void lineBreak();
  void tab();
  void separator();
  // Base64 text at a place in the filter's input.
  void object(const Extent &place, const std::string &title);
  void end();

 private:
  enum class Place {
    Nothing,
    Label,
    List,  // of types or parameters, behind it
    Value,
  };

  bool isHead() const { return place_ == Place::Label || place_ == Place::List; }
  void beginValue();
  void takeList();
  const LineNote *noteOfLine();
  void join();
  void valueText(std::string_view utf8);
  void valueBreak();
  void putBreaks(uint32_t count);
  void beginField(uint32_t label);
  void beginLineField();
  void endField();

  const FilterLibrary &filter_;
  CardEvents &events_;
  LineNoteReader *notes_;
  int16_t format_ = 0;
  VcardStream *stream_ = nullptr;
  const SectionNote *section_ = nullptr;

  Place place_ = Place::Nothing;
  Property property_;
  std::string list_;  // text behind the label
  std::vector<std::string> types_;
  LineNote note_;
  const LineNote *line_ = nullptr;  // the note when it is joined
  const KnownProperty *known_ = nullptr;
  bool muted_ = false;  // the line is there for the summary: its events are dropped

  uint32_t breaks_ = 0;     // line breaks that wait for text behind them
  uint32_t tabsDue_ = 0;    // tabs that are layout
  bool blankHeld_ = false;  // a blank at the end of plain text, which may belong to a line end
  bool inSubLabel_ = false;
  uint32_t fields_ = 0;  // so far
  bool fieldOpen_ = false;
  bool skipsField_ = false;  // its text is of an attendee's parameter,
  Parameter late_;           // this one
};

// Opens the content of a PlacedObject by its place in what `stream` reads. Throws std::bad_alloc.
OpenIo openPlaced(const FilterLibrary &filter, VcardStream *stream, const Extent &place);

}  // namespace px

#endif

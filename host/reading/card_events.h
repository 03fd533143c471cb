// What a person sees in a card: the events that the reader of the calls makes of the filter's
// output, and that every writer stands on. No writer knows a call, a style or a character set.
//
//     beginSection
//       beginSummaryLine text* endSummaryLine          any number, the business card
//       beginProperty                                  any number, in the order of the file
//         text and lineBreak, any number               a plain value
//         or beginField (text, lineBreak)*, any number a structured value, field by field
//         or object                                    what lies in the card as Base64
//         lateParameter, any number
//       endProperty
//     endSection
//
// All text is valid UTF-8, in pieces of any size that end between characters, with its control
// characters as the file has them but for line ends, which come as lineBreak. What an event is
// given is valid during the call.

#ifndef PX_HOST_READING_CARD_EVENTS_H
#define PX_HOST_READING_CARD_EVENTS_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/source/line_notes.h"
#include "px/vcard_io.h"

namespace px {

// One card, or one component of a calendar.
struct Section {
  uint32_t number = 0;           // in the file, from 1
  int16_t format = 0;            // VcardFormatVcard or VcardFormatVcalendar
  std::string component;         // "VCARD", "VEVENT", "VALARM" ...; empty: the calls don't tell
  std::string version;           // "3.0"; empty: not known, or none
  std::optional<Extent> extent;  // from BEGIN to the line end behind END
  uint32_t partOf = 0;           // number of the section in which it stood; 0: none
};

// What a line of the business card shows. Entry is a line whose kind the calls don't tell.
enum class SummaryKind {
  Name,
  Title,
  Organisation,  // a line for each unit
  Address,       // a line for each line of the address; an empty one divides two addresses
  Telephone,
  Email,
  Url,
  Summary,  // from here on: of calendars
  Location,
  Start,
  Status,
  Entry,
};

struct Property {
  uint32_t label = 0;                 // string id of its label; 0: it has none
  std::string name;                   // as the file writes it; empty: the line has none
  std::string group;                  // "item1"; empty: none
  std::string groupLabel;             // what an X-ABLabel line of the group calls it, or empty
  bool labelsGroup = false;           // it is such a line, and another property shows its text
  std::vector<std::string> types;     // "work", in small letters: known ones first, in fixed order
  std::vector<Parameter> parameters;  // all of them, TYPE too, in the order of the file
  std::optional<Extent> extent;       // from the line's first byte to its line end
};

struct CloseIo {
  void operator()(VcardIo *io) const { io->Close(io); }
};
using OpenIo = std::unique_ptr<VcardIo, CloseIo>;

// Base64 data in the card. Its content is decoded while it is read.
class PlacedObject {
 public:
  virtual ~PlacedObject() = default;

  // Opens the content, to be read from its start; throws std::runtime_error, with a text for a
  // person, when it can't be. Any number of times, until the event's end.
  virtual OpenIo open() const = 0;

  Extent place;                  // in what the filter reads, as it is opened again later
  std::string title;             // an attachment's file name, or empty; a hint from a stranger
  std::string declaredType;      // the MIME type that the card tells, or empty; a hint likewise
  std::optional<Extent> extent;  // of the Base64 text in the file
  std::optional<uint64_t> size;  // of the content in bytes, where it is known without decoding
};

class CardEvents {
 public:
  virtual ~CardEvents() = default;

  virtual void beginSection(const Section &) {}
  // `completed`: the filter's own summary is full or shows another one instead; the line was added
  // to it from the property itself.
  virtual void beginSummaryLine(SummaryKind, bool /*completed*/) {}
  virtual void endSummaryLine(const std::vector<std::string> & /*types*/) {}
  virtual void beginProperty(const Property &) {}
  // `label` is a string id, 0 for a field without one. Empty fields come too.
  virtual void beginField(uint32_t /*label*/) {}
  virtual void text(std::string_view /*utf8*/) {}
  virtual void lineBreak() {}
  virtual void object(const PlacedObject &) {}
  // A parameter that the calls tell behind the value, of a property that beginProperty gave none.
  virtual void lateParameter(const Parameter &) {}
  virtual void endProperty() {}
  virtual void endSection() {}
};

}  // namespace px

#endif

// What a person is told of a property beside its value: its label, what stands in parentheses
// behind it, and the rows that its parameters make.

#ifndef PX_HOST_WRITERS_PROPERTY_HEAD_H
#define PX_HOST_WRITERS_PROPERTY_HEAD_H

#include <string>
#include <string_view>
#include <vector>

#include "host/reading/card_events.h"

namespace px {

// A label and its value, with LF between the value's lines.
struct Row {
  std::string label;
  std::string value;
};

struct PropertyHead {
  std::string name;         // in capitals
  std::string label;        // fit to be shown
  std::string group;        // what the card calls its group; stands in parentheses
  std::string additions;    // stands there too: "home, voice"
  std::string heading;      // label and parentheses, as setHeading found them
  std::vector<Row> rows;    // of its parameters
  std::string timeZone;     // stands behind a date
  std::string omittedYear;  // stands for none in a date
  bool isLabelled = false;  // px has a label for it
  bool isDate = false;
  bool isMedia = false;  // a photo, a logo or a sound
  bool isKey = false;
  bool isLast = false;  // it is about the file more than about the person, and stands last

  // What stands in the parentheses: "assistant, home, voice", or nothing.
  std::string parenthesis() const;
  void setHeading();
};

PropertyHead headOf(const Property &property);

// Adds what a parameter tells, also one that comes behind the value.
void addParameter(const Parameter &parameter, PropertyHead *head);

// Whether a component is part of the definition of a time zone, which is for programs only.
bool isTimeZoneRule(std::string_view component);

}  // namespace px

#endif

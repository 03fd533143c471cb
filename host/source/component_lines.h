// The lines of one card, or of one component of a calendar, with what is nested in it passed over.
//
//     BEGIN:VEVENT
//     SUMMARY:...            a line
//     BEGIN:VALARM           a nested component, told with its place when it has been passed over
//     ...
//     END:VALARM
//     LOCATION:...           a line
//     END:VEVENT             the end

#ifndef PX_HOST_SOURCE_COMPONENT_LINES_H
#define PX_HOST_SOURCE_COMPONENT_LINES_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/source/content_lines.h"

namespace px {

// Something that could not be read, for a person: the number of the line, and what is wrong.
using FaultSink = std::function<void(uint64_t line, const std::string &text)>;

// A fault that is told by more than one: of a property where the line before seemed to go on.
constexpr const char *FaultOfBreak =
    "continues the line before, but reads like a property: taken as one";

// The name behind BEGIN: or END:, in capitals and without blanks; the value is taken. No longer
// than names are. `faults` may be null.
std::string takeComponentName(ByteSource *source, const FaultSink *faults = nullptr);

// What the value of an AGENT line begins, at which `source` stands and stays.
enum class AgentValue {
  Other,
  Card,         // a card, whose lines follow
  EscapedCard,  // a card whose lines are in the value
};
AgentValue agentValueAt(ByteSource *source);

class ComponentLines {
 public:
  enum class Item {
    Line,    // a line of the component's own; its value is to be taken before the next call
    Nested,  // a component in it
    End,     // its END line has been taken, or something stands here that shows that it is missing
  };

  struct NestedComponent {
    std::string name;
    Place begin;       // of its BEGIN line
    uint64_t end = 0;  // position behind it
  };

  // `source` stands behind the BEGIN line, the `beginLine`-th, of the component `name`. `faults`
  // may be null.
  ComponentLines(ByteSource *source, ContentLines *lines, std::string name, uint64_t beginLine,
                 const FaultSink *faults);

  Item next(ContentLine *line);

  const NestedComponent &nested() const { return nested_; }

  // Position behind the component's last line; known at the end.
  uint64_t endPosition() const { return end_; }

 private:
  bool beginsBeside(std::string_view begun, std::string_view open, bool behindAgent) const;
  void passOver(std::string name);
  void fault(uint64_t line, const std::string &text) const;

  ByteSource *source_;
  ContentLines *lines_;
  const std::string name_;
  const uint64_t beginLine_;
  const FaultSink *faults_;
  bool behindAgent_ = false;
  NestedComponent nested_;
  uint64_t end_ = 0;
};

}  // namespace px

#endif

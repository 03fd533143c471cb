// The head of a calendar's entry: when it is, what and where, and its state.

#ifndef PX_HOST_WRITERS_ENTRY_HEAD_H
#define PX_HOST_WRITERS_ENTRY_HEAD_H

#include <cstdint>
#include <string>
#include <string_view>

#include "host/writers/entries_by_day.h"

namespace px {

// A day with or without a time, and the zone, which may be unknown.
struct EntryTime {
  std::string text;  // "2024-04-18 19:00" or "2024-04-18"; empty for none
  std::string zone;  // "UTC", "+01:00" or a name
  bool isDay() const { return text.size() == 10; }

  // Takes a date and the zone that stands beside it. Answers false, and stays as it was, for a text
  // that tells no day.
  bool set(std::string_view date, std::string_view zoneName);
};

struct EntryHead {
  std::string component, summary, location, status;
  EntryTime start, end, due;

  bool isEmpty() const;
  // Which day it stands under: that of its start, else of when it is due, else of its end.
  Moment moment() const;
};

// The head's elements, in an article that stays open, and so does an element in it for what stands
// below. `level` is that of its heading.
std::string beginEntry(const EntryHead &head, uint32_t level);
constexpr std::string_view EndEntry = "</div></article>\n";

}  // namespace px

#endif

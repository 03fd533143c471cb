// The entries of a calendar in the order of their days, which a file need not keep.

#ifndef PX_HOST_WRITERS_ENTRIES_BY_DAY_H
#define PX_HOST_WRITERS_ENTRIES_BY_DAY_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/io/spool_file.h"
#include "host/writers/text_sink.h"

namespace px {

// A day and a time, in digits: 202404181900. Those of a day without a time come before its others.
using Moment = uint64_t;
constexpr Moment NoMoment = UINT64_MAX;

// The moment of a date as readableDate writes it, without regard to its zone; NoMoment where no
// day is told.
Moment momentOf(std::string_view readable);

// The day of a moment, "2024-04-18"; empty for none.
std::string dayOf(Moment moment);

// Entries wait in a spool, and 32 bytes in memory for each.
class EntriesByDay {
 public:
  static constexpr size_t Most = 100'000;

  // Adds to what stands below the head of the entry that comes next.
  void append(std::string_view html) { waiting_.append(html); }

  // Ends the entry. Its head is told last, when all of it has been read.
  void endEntry(Moment moment, std::string_view head);

  size_t size() const { return entries_.size(); }

  // Gives all entries in order: `day` is called when one is of another day than the one before it,
  // then `html` with the head and what stands below it, in pieces. Nothing is left behind.
  using DayCall = std::function<void(Moment moment)>;
  void takeAll(const DayCall &day, const TextSink &html);

 private:
  struct Entry {
    Moment moment;
    uint64_t body, head, end;  // positions in the spool
  };

  void give(uint64_t from, uint64_t to, const TextSink &html) const;

  SpoolFile waiting_;
  uint64_t begun_ = 0;  // position of the entry that comes next
  std::vector<Entry> entries_;
};

}  // namespace px

#endif

#include "host/writers/entries_by_day.h"

#include <algorithm>
#include <iterator>

namespace px {
namespace {

constexpr Moment kDay = 10000;  // a day in moments, whose last four digits are the time

// Reads the digits that the pattern has "0" for; what else it has must stand there.
bool readDigits(std::string_view *text, std::string_view pattern, Moment *number) {
  if (text->size() < pattern.size()) return false;
  for (size_t i = 0; i < pattern.size(); ++i) {
    const char c = (*text)[i];
    if (pattern[i] != '0') {
      if (c != pattern[i]) return false;
    } else if (c < '0' || c > '9') {
      return false;
    } else {
      *number = *number * 10 + static_cast<Moment>(c - '0');
    }
  }
  text->remove_prefix(pattern.size());
  return true;
}

}  // namespace

Moment momentOf(std::string_view readable) {
  Moment moment = 0, time = 0;
  if (!readDigits(&readable, "0000-00-00", &moment)) return NoMoment;
  readDigits(&readable, " 00:00", &time);
  return moment * kDay + time;
}

std::string dayOf(Moment moment) {
  if (moment == NoMoment) return {};
  std::string text = std::to_string(moment / kDay);
  text.insert(0, 8 - std::min<size_t>(text.size(), 8), '0');
  return text.insert(6, "-").insert(4, "-");
}

void EntriesByDay::endEntry(Moment moment, std::string_view head) {
  const uint64_t headBegin = waiting_.size();
  waiting_.append(head);
  entries_.push_back({moment, begun_, headBegin, waiting_.size()});
  begun_ = waiting_.size();
}

void EntriesByDay::takeAll(const DayCall &day, const TextSink &html) {
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const Entry &a, const Entry &b) { return a.moment < b.moment; });
  for (size_t i = 0; i < entries_.size(); ++i) {
    const Entry &entry = entries_[i];
    if (i == 0 || dayOf(entries_[i - 1].moment) != dayOf(entry.moment)) day(entry.moment);
    give(entry.head, entry.end, html);
    give(entry.body, entry.head, html);
  }
  *this = EntriesByDay();
}

void EntriesByDay::give(uint64_t from, uint64_t to, const TextSink &html) const {
  char buffer[16 * 1024];
  while (from < to) {
    const auto room = static_cast<size_t>(std::min<uint64_t>(sizeof buffer, to - from));
    const size_t count = waiting_.readAt(from, buffer, room);
    if (count == 0) return;
    html({buffer, count});
    from += count;
  }
}

}  // namespace px

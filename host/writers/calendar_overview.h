// The first lines of a calendar: when, what and where, a line for each of its entries.
//
//     2024-04-18 19:00 UTC      Garden society: spring meeting, Village hall
//                               Order seed potatoes

#ifndef PX_HOST_WRITERS_CALENDAR_OVERVIEW_H
#define PX_HOST_WRITERS_CALENDAR_OVERVIEW_H

#include <string>
#include <string_view>
#include <vector>

#include "host/reading/card_events.h"
#include "host/writers/text_look.h"
#include "host/writers/wrapped_lines.h"

namespace px {

// Takes the events of a whole file. Sections that are no entries of a calendar are passed over.
class CalendarOverview : public CardEvents {
 public:
  CalendarOverview(const TextLook &look, TextSink sink);

  // Ends the overview: adds the rule that stands before the entries' own text, and gives all to the
  // sink. Nothing, where no entry came.
  void finish();

  void beginSection(const Section &section) override;
  void beginSummaryLine(SummaryKind kind, bool completed) override;
  void endSummaryLine(const std::vector<std::string> &types) override;
  void text(std::string_view utf8) override;
  void lineBreak() override;
  void endSection() override;

 private:
  const TextLook look_;
  WrappedLines lines_;
  bool wroteAny_ = false;
  bool isEntry_ = false;
  bool isNamed_ = false;         // the calls tell that it is one
  std::string *line_ = nullptr;  // where text goes
  std::string when_;
  std::string what_;
  std::string where_;
};

}  // namespace px

#endif

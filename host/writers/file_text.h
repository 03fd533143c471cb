// The text of a whole file: its cards as they come, and each calendar with its overview first.

#ifndef PX_HOST_WRITERS_FILE_TEXT_H
#define PX_HOST_WRITERS_FILE_TEXT_H

#include "host/io/spool_file.h"
#include "host/writers/calendar_overview.h"
#include "host/writers/card_text.h"

namespace px {

// The overview stands before entries that come at the same time, so the text of a calendar's
// entries waits in a spool.
class FileText : public CardEvents {
 public:
  FileText(const TextLook &look, ContentTypeOf contentTypeOf, TextSink sink);

  // Writes what is still held: to be called at the end of the file.
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
  const TextSink sink_;
  CalendarOverview overview_;
  CardText text_;
  bool inCalendar_ = false;
  bool inProperty_ = false;
  SpoolFile waiting_;
};

}  // namespace px

#endif

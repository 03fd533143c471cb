#include "host/writers/file_text.h"

#include "px/vcrd.h"

namespace px {

FileText::FileText(const TextLook &look, ContentTypeOf contentTypeOf, TextSink sink)
    : sink_(std::move(sink)),
      overview_(look, sink_),
      text_(look, std::move(contentTypeOf), [this](std::string_view text) {
        if (inCalendar_) {
          waiting_.append(text);
        } else {
          sink_(text);
        }
      }) {}

void FileText::finish() {
  text_.finish();
  if (!inCalendar_) return;
  overview_.finish();
  inCalendar_ = false;
  char buffer[16 * 1024];
  for (uint64_t position = 0; position < waiting_.size();) {
    const size_t count = waiting_.readAt(position, buffer, sizeof buffer);
    sink_({buffer, count});
    position += count;
  }
  waiting_ = SpoolFile();
}

void FileText::beginSection(const Section &section) {
  const bool isCalendar = section.format == VcardFormatVcalendar;
  if (isCalendar != inCalendar_) finish();
  inCalendar_ = isCalendar;
  if (inCalendar_) overview_.beginSection(section);
  text_.beginSection(section);
}

void FileText::beginSummaryLine(SummaryKind kind, bool completed) {
  if (inCalendar_) overview_.beginSummaryLine(kind, completed);
  text_.beginSummaryLine(kind, completed);
}

void FileText::endSummaryLine(const std::vector<std::string> &types) {
  if (inCalendar_) overview_.endSummaryLine(types);
  text_.endSummaryLine(types);
}

void FileText::beginProperty(const Property &property) {
  inProperty_ = true;
  text_.beginProperty(property);
}

void FileText::beginField(uint32_t label) { text_.beginField(label); }

void FileText::text(std::string_view utf8) {
  if (inCalendar_ && !inProperty_) overview_.text(utf8);
  text_.text(utf8);
}

void FileText::lineBreak() {
  if (inCalendar_ && !inProperty_) overview_.lineBreak();
  text_.lineBreak();
}

void FileText::object(const PlacedObject &object) { text_.object(object); }

void FileText::lateParameter(const Parameter &parameter) { text_.lateParameter(parameter); }

void FileText::endProperty() {
  inProperty_ = false;
  text_.endProperty();
}

void FileText::endSection() {
  if (inCalendar_) overview_.endSection();
  text_.endSection();
}

}  // namespace px

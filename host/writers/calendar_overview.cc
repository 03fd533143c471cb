#include "host/writers/calendar_overview.h"

#include <algorithm>

#include "host/labels/label_texts.h"
#include "host/languages/translation.h"
#include "host/source/utf8.h"
#include "host/writers/dates.h"
#include "px/vcrd.h"

namespace px {
namespace {

constexpr uint32_t kUntitledId = 79493;
constexpr size_t kLongest = 1024;  // bytes: more don't fit in a line

bool isEntry(const Section &section) {
  return section.format == VcardFormatVcalendar &&
         (section.component.empty() || section.component == "VEVENT" ||
          section.component == "VTODO" || section.component == "VJOURNAL");
}

}  // namespace

CalendarOverview::CalendarOverview(const TextLook &look, TextSink sink)
    : look_(look), lines_(UINT32_MAX, std::move(sink)) {}

void CalendarOverview::finish() {
  if (wroteAny_) {
    lines_.skipLine();
    lines_.write(std::string(look_.ruleLength(), '='));
    lines_.skipLine();
  }
  lines_.flush();
  wroteAny_ = false;
}

void CalendarOverview::beginSection(const Section &section) {
  isEntry_ = isEntry(section);
  isNamed_ = !section.component.empty();
  when_.clear();
  what_.clear();
  where_.clear();
}

void CalendarOverview::beginSummaryLine(SummaryKind kind, bool) {
  line_ = nullptr;
  if (kind == SummaryKind::Start) line_ = &when_;
  if (kind == SummaryKind::Summary || kind == SummaryKind::Entry) line_ = &what_;
  if (kind == SummaryKind::Location) line_ = &where_;
  if (!isEntry_) line_ = nullptr;
  if (line_ && !line_->empty()) text(", ");
}

void CalendarOverview::text(std::string_view utf8) {
  if (line_ && line_->size() < kLongest) appendPrintable(utf8, line_);
}

void CalendarOverview::lineBreak() {
  if (line_ && !line_->empty()) text(" ");
}

void CalendarOverview::endSummaryLine(const std::vector<std::string> &) { line_ = nullptr; }

void CalendarOverview::endSection() {
  const bool isEmpty = when_.empty() && what_.empty() && where_.empty();
  if (!isEntry_ || (isEmpty && !isNamed_)) return;
  isEntry_ = false;
  wroteAny_ = true;
  std::string line = readableDate(when_).value_or(when_);
  const uint32_t width = displayWidth(line);
  const uint32_t least = width + TextLook::Gap;
  line.append(std::max(least, TextLook::ValueColumn) - width, ' ');
  line += what_.empty() ? tr(labelText(kUntitledId)) : what_;
  if (!where_.empty()) line += ", " + where_;
  const uint32_t room = look_.columns();
  if (displayWidth(line) > room) {
    line.resize(lengthWithin(line, room - 1));
    line += "\u2026";
  }
  lines_.write(line);
  lines_.endLine();
}

}  // namespace px

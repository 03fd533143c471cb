#include "host/source/view_builder.h"

#include <limits>
#include <stdexcept>

#include "host/source/ascii_case.h"
#include "host/source/line_parameters.h"
#include "host/source/source_view.h"
#include "host/source/text_decoder.h"
#include "host/source/utf8.h"
#include "host/source/value_bytes.h"
#include "host/source/value_text.h"
#include "px/vcrd.h"

namespace px {
namespace {

constexpr uint64_t kNoEnd = std::numeric_limits<int64_t>::max();

// A document is closed at the next card behind as many bytes, so that the filter's positions of 32
// bits hold the next one.
constexpr uint64_t kLargeDocument = uint64_t{1} << 30;

// Components that can stand outside of a calendar, where somebody took them out of one.
bool isCalendarPart(std::string_view name) {
  return name == "VEVENT" || name == "VTODO" || name == "VJOURNAL" || name == "VFREEBUSY" ||
         name == "VTIMEZONE" || name == "VALARM";
}

}  // namespace

ViewBuilder::Input::Input(VcardIo *io, bool countLines, ViewText *view, LineNotes *notes,
                          const FaultSink *faults)
    : source(io, kNoEnd, countLines), lines(&source), properties(&source, view, notes, faults) {}

ViewBuilder::ViewBuilder(UnicodeInput *input, SpoolFile *text, LineNotes *notes,
                         SpoolFile *documents, const FaultSink *faults)
    : unicode_(*input),
      view_(text),
      notes_(*notes),
      documents_(*documents),
      faults_(faults),
      agentsIo_(&agents_, 0, kNoEnd),
      file_(input->io(), true, &view_, notes, faults),
      agentsInput_(&agentsIo_, false, &view_, notes, faults) {
  const auto guess = [this]() -> const std::string & { return guessedCharset(); };
  file_.file = {unicode_.marked(), &unicode_, guess};
  agentsInput_.file = {unicode_.marked(), nullptr, guess};
}

void ViewBuilder::build() {
  ByteSource &source = file_.source;
  source.moveTo({unicode_.start(), 1});
  ContentLine line;
  while (file_.lines.next(&line)) {
    if (line.colon && equalsNoCase(line.name, "BEGIN")) {
      const Place begin = line.start;
      const std::string name = takeComponentName(&source, faults_);
      if (name == "VCALENDAR") {
        reportOutside();
        buildCalendar(begin);
        continue;
      }
      if (name == "VCARD" || isCalendarPart(name)) {
        reportOutside();
        calendarVersion_.clear();
        buildComponent(begin, kNoEnd, 0);
        continue;
      }
    } else if (line.colon) {
      ValueBytes(&source, transferOf(line), FoldRule::DropsBlank).skip();
    }
    if (outsideLine_ == 0) outsideLine_ = line.start.line;
  }
  if (notes_.sectionCount() == 0) throw std::runtime_error("not a vCard or vCalendar file");
  reportOutside();
  closeDocument();
}

void ViewBuilder::reportOutside() {
  if (outsideLine_ > 0) fault(outsideLine_, "text outside of any card");
  outsideLine_ = 0;
}

// A calendar's own lines are a section, wherever they stand in it; its components come behind.
void ViewBuilder::buildCalendar(const Place &begin) {
  ByteSource &source = file_.source;
  const Place body = source.place();
  calendarVersion_ = versionOf(&file_, "VCALENDAR");
  const auto number = static_cast<uint32_t>(notes_.sectionCount() + 1);
  const VersionRules rules = rulesOf(calendarVersion_, true);
  file_.lines.setFoldRule(rules.fold);
  section_ = SectionNote();
  section_.component = "VCALENDAR";
  section_.version = calendarVersion_;
  openSection(VcardFormatVcalendar);
  file_.properties.beginSection(VcardFormatVcalendar, rules, &file_.file, &section_);

  ComponentLines lines(&source, &file_.lines, "VCALENDAR", begin.line, faults_);
  ContentLine line;
  bool hasComponents = false;
  ComponentLines::Item item;
  while ((item = lines.next(&line)) != ComponentLines::Item::End) {
    if (item == ComponentLines::Item::Line) {
      file_.properties.add(line);
    } else {
      hasComponents = true;
    }
  }
  section_.extent = extentOf({&file_, begin, 0, 0, 0, {}}, lines.endPosition());
  closeSection();
  if (!hasComponents) return;

  const Place behind = source.place();
  source.moveTo(body);
  while (source.place().position < behind.position && file_.lines.next(&line)) {
    if (!line.colon) continue;
    const Place start = line.start;
    if (equalsNoCase(line.name, "BEGIN")) {
      if (!takeComponentName(&source).empty()) buildComponent(start, behind.position, number);
    } else {
      ValueBytes(&source, transferOf(line), FoldRule::DropsBlank).skip();
    }
  }
  source.moveTo(behind);
}

// Writes a component and all that is nested in it, and goes on behind it; all of it lies before
// `end`.
void ViewBuilder::buildComponent(const Place &begin, uint64_t end, uint32_t partOf) {
  queue_.assign(1, {&file_, begin, end, partOf, 0, std::nullopt});
  std::optional<Place> behind;
  while (!queue_.empty()) {
    const Component component = queue_.front();
    queue_.pop_front();
    nested_.clear();
    const Place sectionEnd = buildSection(component);
    queue_.insert(queue_.begin(), nested_.begin(), nested_.end());
    if (!behind) behind = sectionEnd;
  }
  file_.source.moveTo(*behind, kNoEnd);
}

// Writes one section; answers the place behind it.
Place ViewBuilder::buildSection(const Component &component) {
  Input &input = *component.input;
  input.source.moveTo(component.begin, component.end);
  ContentLine line;
  if (!input.lines.next(&line)) return input.source.place();
  const std::string name = takeComponentName(&input.source);
  const bool isCard = name == "VCARD";
  const int16_t format = isCard ? VcardFormatVcard : VcardFormatVcalendar;

  const std::string version = isCard ? versionOf(&input, name) : calendarVersion_;
  const VersionRules rules = rulesOf(version, !isCard);
  input.lines.setFoldRule(rules.fold);

  section_ = SectionNote();
  section_.component = name;
  section_.version = version;
  section_.partOf = component.partOf;
  openSection(format);
  input.properties.beginSection(format, rules, &input.file, &section_);
  const auto number = static_cast<uint32_t>(notes_.sectionCount() + 1);

  ComponentLines lines(&input.source, &input.lines, name, component.begin.line, faults_);
  for (;;) {
    const ComponentLines::Item item = lines.next(&line);
    if (item == ComponentLines::Item::End) break;
    if (item == ComponentLines::Item::Nested) {
      addNested({&input, lines.nested().begin, lines.nested().end, number, component.depth + 1,
                 component.extent});
      continue;
    }
    const Place start = line.start;
    const uint64_t agent = agents_.size();
    if (input.properties.takeAgentsCard(line, &agents_)) {
      const Place end = input.source.place();
      Component card = {&agentsInput_, {agent, start.line}, agents_.size(),
                        number,        component.depth + 1, component.extent};
      if (&input == &file_) card.extent = extentOf({&input, start, 0, 0, 0, {}}, end.position);
      addNested(card);
    } else {
      input.properties.add(line);
    }
  }
  input.properties.endSection();
  section_.extent = extentOf(component, lines.endPosition());
  closeSection();
  return input.source.place();
}

void ViewBuilder::addNested(const Component &component) {
  if (component.depth > DeepestNesting || queue_.size() + nested_.size() >= MostNested) {
    fault(component.begin.line, "nested too deep or too often: left out");
  } else {
    nested_.push_back(component);
  }
}

std::optional<Extent> ViewBuilder::extentOf(const Component &component, uint64_t end) {
  if (component.input != &file_) return component.extent;
  const uint64_t offset = unicode_.filePosition(component.begin.position);
  return Extent{offset, unicode_.filePosition(end) - offset};
}

// The version must be known before the first line is written. A calendar tells it before its
// components, a card anywhere. The source goes back to where it stood.
std::string ViewBuilder::versionOf(Input *input, const std::string &name) {
  constexpr size_t longest = 32;
  const Place here = input->source.place();
  ComponentLines lines(&input->source, &input->lines, name, 0, nullptr);
  ContentLine line;
  std::string version;
  for (bool found = false; !found;) {
    const ComponentLines::Item item = lines.next(&line);
    if (item == ComponentLines::Item::End) break;
    if (item == ComponentLines::Item::Nested) {
      if (name == "VCALENDAR") break;
      continue;
    }
    found = equalsNoCase(line.name, "VERSION");
    ValueBytes value(&input->source, transferOf(line), FoldRule::DropsBlank);
    for (std::string_view piece = value.next(); !piece.empty(); piece = value.next()) {
      if (found) version.append(piece, 0, longest - version.size());
    }
  }
  input->source.moveTo(here);
  version.erase(0, std::min(version.find_first_not_of(" \t"), version.size()));
  version.erase(version.find_last_not_of(" \t") + 1);
  return isValidUtf8(version) ? version : asUtf8(version);
}

void ViewBuilder::openSection(int16_t format) {
  if (format_ != format || view_.size() - documentStart_ > kLargeDocument) {
    closeDocument();
    format_ = format;
    documentStart_ = view_.size();
  }
  const bool first = view_.size() == documentStart_;
  view_.put(format == VcardFormatVcard ? "BEGIN:VCARD\n" : "BEGIN:VCALENDAR\n");
  // The filter takes the first line of a document with what the summary left behind.
  if (first) view_.putAbsorber();
  section_.format = format;
}

void ViewBuilder::closeSection() {
  view_.put(section_.format == VcardFormatVcard ? "END:VCARD\n" : "END:VCALENDAR\n");
  notes_.add(section_);
}

void ViewBuilder::closeDocument() {
  if (format_ == 0) return;
  const ViewDocument document = {format_, {documentStart_, view_.size() - documentStart_}};
  documents_.append({reinterpret_cast<const char *>(&document), sizeof document});
  format_ = 0;
}

// Goes through the file, when the first text is met that names no set and isn't UTF-8, until it has
// seen enough of such texts: whoever writes cards stays with one set.
const std::string &ViewBuilder::guessedCharset() {
  if (!guess_.empty()) return guess_;
  constexpr size_t enough = 64 * 1024;  // bytes
  CharsetGuess guess;
  ByteSource source(unicode_.io(), kNoEnd);
  ContentLines lines(&source);
  ContentLine line;
  std::vector<HeadParameter> given;
  std::string text;
  size_t seen = 0;
  while (seen < enough && lines.next(&line)) {
    if (!line.colon) continue;
    given.clear();
    splitParameters(line.parameters, ContentLines::MostParameters, &given);
    const Transfer transfer = transferOf(given);
    const std::vector<Parameter> parameters = parametersOf(given, VersionRules());
    ValueBytes value(&source, transfer, FoldRule::DropsBlank);
    if (transfer != Transfer::Base64 && !valueOf(parameters, "CHARSET")) {
      text.clear();
      for (std::string_view piece = value.next(); !piece.empty(); piece = value.next()) {
        text.append(piece, 0, enough - seen - text.size());
        if (seen + text.size() == enough) break;
      }
      size_t open;
      if (!isUtf8(text, &open)) {
        guess.put(text);
        seen += text.size();
      }
    }
    value.skip();
  }
  guess_ = guess.finish();
  return guess_;
}

}  // namespace px

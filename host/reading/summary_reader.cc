#include "host/reading/summary_reader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/reading/type_list.h"
#include "host/source/ascii_case.h"
#include "host/source/property_table.h"
#include "host/source/value_text.h"
#include "host/source/view_text.h"
#include "px/vcrd.h"

namespace px {
namespace {

constexpr uint32_t kSmallestHeading = 3;
constexpr size_t kMostHeld = 64 * 1024;

SummaryRole roleOf(SummaryKind kind) {
  switch (kind) {
    case SummaryKind::Organisation:
      return SummaryRole::Organisation;
    case SummaryKind::Telephone:
      return SummaryRole::Telephone;
    case SummaryKind::Email:
      return SummaryRole::Email;
    case SummaryKind::Url:
      return SummaryRole::Url;
    default:
      return SummaryRole::None;
  }
}

}  // namespace

void SummaryReader::begin(int16_t format, const SectionNote *note, bool inPlace) {
  format_ = format;
  note_ = note;
  inPlace_ = inPlace;
  heading_ = block_ = 0;
  kind_ = SummaryKind::Entry;
  lineOpen_ = lineHeld_ = inTypes_ = separator_ = false;
  breaks_ = 0;
  types_.clear();
  noteOfLine_ = SummaryNote();
  holding_ = !note_ && format_ == VcardFormatVcard;
  held_.clear();
  heldSize_ = 0;
  addressRole_ = SummaryRole::None;
  if (note_) chooseAddress();
}

void SummaryReader::heading(uint32_t level) {
  heading_ = level;
  kind_ = kindOfParagraph();
  if (holding_ && heading_ == kSmallestHeading) held_.resize(block_ + 1);
}

// What the paragraph that begins shows. Only the notes tell all kinds: without them the paragraphs
// of a card in the smallest heading wait until all have come, and those of a calendar stay untold.
SummaryKind SummaryReader::kindOfParagraph() const {
  if (format_ == VcardFormatVcalendar) {
    if (!note_) return SummaryKind::Entry;
    uint32_t number = block_;
    constexpr std::pair<SummaryRole, SummaryKind> rows[] = {
        {SummaryRole::Summary, SummaryKind::Summary},
        {SummaryRole::Location, SummaryKind::Location},
        {SummaryRole::Start, SummaryKind::Start},
        {SummaryRole::Status, SummaryKind::Status}};
    for (const auto &[role, kind] : rows) {
      if (note_->has(role) && number-- == 0) return kind;
    }
    return SummaryKind::Entry;
  }
  if (heading_ == 0) return SummaryKind::Name;
  if (heading_ == 1) return SummaryKind::Title;
  if (heading_ == 2) return SummaryKind::Organisation;
  constexpr SummaryKind blocks[] = {SummaryKind::Address, SummaryKind::Telephone,
                                    SummaryKind::Email, SummaryKind::Url};
  const uint32_t first = addressRole_ == SummaryRole::None ? 1 : 0;
  return note_ && first + block_ < std::size(blocks) ? blocks[first + block_] : SummaryKind::Entry;
}

void SummaryReader::text(std::string_view utf8, bool stringBegins) {
  const bool canHaveTypes = kind_ == SummaryKind::Telephone || kind_ == SummaryKind::Email ||
                            (kind_ == SummaryKind::Entry && format_ == VcardFormatVcard);
  if (canHaveTypes && stringBegins) {
    // The view has no number without text, so what comes first is that.
    if (!inTypes_ && utf8 == TypesBegin && (lineOpen_ || !note_)) {
      inTypes_ = true;
      types_.clear();
      return;
    }
    if (inTypes_ && utf8 == ListEnd) {
      inTypes_ = false;
      return;
    }
  }
  if (inTypes_) {
    types_.push_back(inSmallLetters(utf8));
    return;
  }
  if (!lineOpen_) beginLine();
  if (noteOfLine_.cut) return;
  const bool between = separator_;
  separator_ = false;
  if (lineHeld_) {
    std::string &text = held_.back().back().text;
    if (between && !text.empty()) text += ' ';
    text.append(breaks_, '\n');
    text += utf8;
    heldSize_ += breaks_ + utf8.size();
    breaks_ = 0;
    // More than honest cards have: the first paragraph is then taken for an address.
    if (heldSize_ > kMostHeld) putHeld(true);
    return;
  }
  for (; breaks_ > 0; --breaks_) events_.lineBreak();
  if (between) events_.text(" ");
  events_.text(utf8);
}

void SummaryReader::lineBreak() {
  const bool isBlock = kind_ == SummaryKind::Telephone || kind_ == SummaryKind::Email ||
                       kind_ == SummaryKind::Url || kind_ == SummaryKind::Entry;
  if (isBlock) {
    endLine();
  } else if (lineOpen_) {
    ++breaks_;
  }
  separator_ = false;
}

void SummaryReader::tab() {
  if (breaks_ == 0) text("\t", false);
}

void SummaryReader::separator() {
  if (!inTypes_) separator_ = true;
}

void SummaryReader::label(uint32_t id) {
  if (inTypes_) types_.emplace_back(typeOfLabel(id));
}

void SummaryReader::beginLine() {
  lineOpen_ = true;
  separator_ = false;
  breaks_ = 0;
  lineHeld_ = holding_ && kind_ == SummaryKind::Entry && block_ < held_.size();
  if (lineHeld_) {
    held_[block_].emplace_back();
    return;
  }
  events_.beginSummaryLine(kind_, false);
  noteOfLine_ = SummaryNote();
  if (!note_) return;
  if (kind_ == SummaryKind::Address) {
    for (uint32_t i = 0; i <= addressNumber_; ++i) notes_->nextSummary(addressRole_, &noteOfLine_);
  } else if (kind_ >= SummaryKind::Organisation && kind_ <= SummaryKind::Url) {
    notes_->nextSummary(roleOf(kind_), &noteOfLine_);
  }
}

void SummaryReader::endLine() {
  if (!lineOpen_) return;
  lineOpen_ = false;
  breaks_ = 0;
  if (lineHeld_) {
    held_[block_].back().types = types_;
    lineHeld_ = false;
  } else {
    if (noteOfLine_.cut) putViewValue(noteOfLine_);
    const bool told =
        note_ && !inPlace_ && kind_ >= SummaryKind::Telephone && kind_ <= SummaryKind::Url;
    events_.endSummaryLine(told ? noteOfLine_.types : types_);
  }
  noteOfLine_ = SummaryNote();
  types_.clear();
}

// The end of a paragraph.
void SummaryReader::endParagraph() {
  endLine();
  inTypes_ = false;
  if (note_) {
    if (kind_ == SummaryKind::Address) completeAddresses();
    if (kind_ >= SummaryKind::Telephone && kind_ <= SummaryKind::Url) complete(kind_);
  }
  if (heading_ == kSmallestHeading || format_ == VcardFormatVcalendar) ++block_;
}

void SummaryReader::end() {
  endLine();
  if (holding_) putHeld(held_.size() > 3);
}

// Gives out the lines that waited. Four paragraphs are address, telephone numbers, mail addresses
// and URLs; without an address there are three.
void SummaryReader::putHeld(bool hasAddress) {
  holding_ = false;
  constexpr SummaryKind kinds[] = {SummaryKind::Address, SummaryKind::Telephone, SummaryKind::Email,
                                   SummaryKind::Url};
  const size_t first = hasAddress ? 0 : 1;
  const bool open = lineHeld_;
  lineHeld_ = false;
  for (size_t block = 0; block < held_.size(); ++block) {
    const SummaryKind kind = kinds[std::min(first + block, std::size(kinds) - 1)];
    const bool isAddress = kind == SummaryKind::Address;
    const std::vector<HeldLine> &lines = held_[block];
    for (size_t i = 0; i < lines.size(); ++i) {
      if (i == 0 || !isAddress) events_.beginSummaryLine(kind, false);
      if (i > 0 && isAddress) events_.lineBreak();
      events_.text(lines[i].text);
      const bool last = i + 1 == lines.size();
      if (last && open && block + 1 == held_.size()) {
        kind_ = kind;  // goes on
        lineOpen_ = true;
      } else if (last || !isAddress) {
        events_.endSummaryLine(lines[i].types);
      }
    }
  }
  held_.clear();
}

// What the filter's summary had no room for.

void SummaryReader::chooseAddress() {
  // The filter shows the first label or else the first address, international ones before others.
  addressRole_ = SummaryRole::None;
  for (const SummaryRole role : {SummaryRole::Label, SummaryRole::Address}) {
    if (!note_->has(role)) continue;
    addressRole_ = role;
    addressNumber_ = 0;
    SummaryNote line;
    for (uint32_t number = 0; notes_->nextSummary(role, &line); ++number) {
      if (std::find(line.types.begin(), line.types.end(), "intl") == line.types.end()) continue;
      addressNumber_ = number;
      break;
    }
    notes_->nextSummary(SummaryRole::None, &line);  // from the first one again
    return;
  }
}

void SummaryReader::complete(SummaryKind kind) {
  SummaryNote line;
  while (notes_->nextSummary(roleOf(kind), &line)) {
    events_.beginSummaryLine(kind, true);
    putViewValue(line);
    events_.endSummaryLine(line.types);
  }
}

void SummaryReader::completeAddresses() {
  SummaryNote line;
  notes_->nextSummary(SummaryRole::None, &line);
  for (uint32_t number = 0; notes_->nextSummary(SummaryRole::Address, &line); ++number) {
    if (addressRole_ == SummaryRole::Address && number == addressNumber_) continue;
    // An empty line divides two addresses.
    events_.beginSummaryLine(SummaryKind::Address, true);
    events_.endSummaryLine({});
    events_.beginSummaryLine(SummaryKind::Address, true);
    putViewValue(line);
    events_.endSummaryLine({});
  }
}

// Writes a value of the view as the filter's summary would. It is no longer than what PropertyView
// looks at as a whole.
void SummaryReader::putViewValue(const SummaryNote &note) {
  std::string encoded(static_cast<size_t>(note.value.length), '\0');
  viewText_->readAt(note.value.offset, encoded.data(), encoded.size());
  const bool isAddress = note.role == SummaryRole::Address;
  const bool hasFields = isAddress || note.role == SummaryRole::Organisation;
  std::vector<std::string> fields(1);
  std::string_view rest = encoded;
  for (;;) {
    const size_t end = hasFields ? std::min(rest.find(';'), rest.size()) : rest.size();
    appendUnquoted(rest.substr(0, end), &fields.back());
    if (note.cut) std::replace(fields.back().begin(), fields.back().end(), FieldDivider, '\n');
    if (end == rest.size()) break;
    fields.emplace_back();
    rest.remove_prefix(end + 1);
  }
  std::string text;
  constexpr size_t locality = 3;
  constexpr size_t region = 4;
  for (size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].empty()) continue;
    text += fields[i];
    const bool joined = isAddress && (i == locality || i == region) && i + 1 < fields.size() &&
                        !fields[i + 1].empty();
    text += !joined ? "\n" : i == locality ? ", " : "   ";
  }
  while (text.ends_with('\n')) text.pop_back();
  for (std::string_view line = text;;) {
    const size_t end = std::min(line.find('\n'), line.size());
    if (end > 0) events_.text(line.substr(0, end));
    if (end == line.size()) return;
    events_.lineBreak();
    line.remove_prefix(end + 1);
  }
}

}  // namespace px

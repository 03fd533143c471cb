#include "host/reading/call_reader.h"

#include <algorithm>
#include <stdexcept>

#include "host/source/ascii_case.h"
#include "host/source/content_lines.h"
#include "host/source/line_parameters.h"
#include "host/source/value_text.h"
#include "host/source/view_text.h"
#include "px/vcrd.h"

namespace px {
namespace {

// Attributes of a style: those of a font, and which of them.
constexpr uint32_t kFontAttribute = 8;
constexpr uint32_t kBold = 2;
constexpr uint32_t kItalic = 3;

constexpr uint32_t kSmallestHeading = 3;

// A list of types or parameters comes as strings of their own.
constexpr std::string_view kTypesBegin = "        ( ";
constexpr std::string_view kParametersBegin = " ( ";
constexpr std::string_view kListEnd = " )";

constexpr size_t kLongestList = 64 * 1024;
constexpr size_t kMostHeld = 64 * 1024;

constexpr uint32_t kAttendeeLabel = 79360;
constexpr uint32_t kReferenceLabels[] = {79386, 79387};  // of a picture that lies elsewhere

struct AttendeeRow {
  uint32_t label;
  const char *parameter;
};
constexpr AttendeeRow kAttendeeRows[] = {
    {79404, "ROLE"}, {85564, "STATUS"}, {79385, "RSVP"}, {79384, "EXPECT"}};

class PlacedBase64 final : public PlacedObject {
 public:
  PlacedBase64(const FilterLibrary &filter, VcardStream *stream, uint64_t start, uint64_t length)
      : filter_(filter), stream_(stream), start_(start), length_(length) {}

  OpenIo open() const override {
    constexpr uint32_t base64 = 2;
    VcardIo *opened = nullptr;
    // The ranges that the filter gives are never empty, so what fails is memory.
    if (filter_.doSpecial(stream_, start_, &opened, length_, 0, base64) != 0)
      throw std::bad_alloc();
    return OpenIo(opened);
  }

 private:
  const FilterLibrary &filter_;
  VcardStream *stream_;
  uint64_t start_, length_;
};

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

CallReader::CallReader(const FilterLibrary &filter, CardEvents *events, LineNoteReader *notes,
                       const SpoolFile *viewText)
    : filter_(filter), events_(*events), notes_(notes), viewText_(viewText) {}

void CallReader::beginRun(int16_t format, VcardStream *stream, bool inPlace) {
  format_ = format;
  inPlace_ = inPlace;
  stream_ = stream;
  styles_.clear();
}

// Styles. The definitions say which is which: a height makes a heading of the summary, italics make
// a sub-label, and a label is bold.

void CallReader::beginDefinition(uint32_t type, uint32_t, const void *record) {
  takeRun();
  if (type == SoDefinitionStyle) {
    defined_ = Style();
    const bool paragraph = static_cast<const VcardStyleDef *>(record)->StyleDefKind == 1;
    if (paragraph) defined_.role = Role::Paragraph;
  } else if (type == SoDefinitionAttachment) {
    if (place_ != Place::Value) beginValue();
    place_ = Place::Title;
    title_.clear();
  }
}

void CallReader::setCharHeight(uint32_t height) { defined_.height = height; }

void CallReader::setAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t) {
  if (a != kFontAttribute) return;
  if (b == kBold) defined_.bold = c != 0;
  if (b == kItalic) defined_.italic = c != 0;
}

void CallReader::endDefinition(uint32_t type, uint32_t id) {
  takeRun();
  if (type == SoDefinitionStyle) {
    constexpr uint32_t mostStyles = 64;
    if (id >= mostStyles) return;
    if (defined_.role != Role::Paragraph) {
      defined_.role = defined_.height > 0 ? Role::Heading
                      : defined_.italic   ? Role::SubLabel
                      : defined_.bold     ? Role::Label
                                          : Role::Plain;
    }
    if (styles_.size() <= id) styles_.resize(id + 1);
    styles_[id] = defined_;
  } else if (type == SoDefinitionAttachment) {
    place_ = Place::Value;
    placeObject();
  }
}

void CallReader::useStyle(uint32_t id) {
  takeRun();
  if (id >= styles_.size()) return;
  const Style &style = styles_[id];
  inSubLabel_ = style.role == Role::SubLabel;
  switch (style.role) {
    case Role::Paragraph:
      paragraphBegins_ = true;
      return;
    case Role::Label:
      // A reference to a picture has a paragraph style of its own inside the property.
      if (paragraphBegins_) beginLabel();
      break;
    case Role::Plain:
      if (place_ == Place::Label) place_ = Place::List;
      break;
    case Role::Heading:
      if (place_ == Place::Summary) beginHeading(style.height);
      break;
    case Role::SubLabel:
      if (place_ == Place::Label || place_ == Place::List) beginValue();
      break;
  }
  paragraphBegins_ = false;
}

// Sections.

void CallReader::beginSection(uint32_t, uint32_t, uint32_t) {
  takeRun();
  endSection();
  Section section;
  section.number = ++section_;
  section.format = format_;
  note_.reset();
  if (notes_) {
    note_.emplace();
    if (!notes_->nextSection(&*note_)) note_.reset();
  }
  if (note_) {
    section.component = note_->component;
    section.version = note_->version;
    section.extent = note_->extent;
    section.partOf = note_->partOf;
    chooseAddress();
  }
  sectionOpen_ = true;
  events_.beginSection(section);
  place_ = Place::Summary;
  block_ = 0;
  holding_ = !note_ && format_ == VcardFormatVcard;
  held_.clear();
  heldSize_ = 0;
}

bool CallReader::emitBreak(uint32_t kind, uint32_t) {
  takeRun();
  if (place_ == Place::Summary) {
    if (kind == SoBreakParagraph) endBlock();
  } else {
    endProperty();
  }
  if (kind != SoBreakParagraph) endSection();
  return false;
}

void CallReader::endRun() { endSection(); }

uint64_t CallReader::position() const {
  if (place_ != Place::Summary && line_ && line_->extent) return line_->extent->offset;
  return note_ && note_->extent ? note_->extent->offset : 0;
}

void CallReader::endSection() {
  if (!sectionOpen_) return;
  endSummary();
  endProperty();
  sectionOpen_ = false;
  place_ = Place::Nothing;
  events_.endSection();
}

// Text. The codes come as runs; a run that begins a string may be a list's bracket.

void CallReader::emitChars(std::span<const uint16_t> codes) {
  decoder_.put(codes, &run_);
  constexpr size_t most = 4096;
  if (run_.size() < most) return;
  // A bracket is no longer than this, and a blank at the end may be layout.
  std::string last;
  if (run_.back() == ' ') {
    last = " ";
    run_.pop_back();
  }
  std::string whole;
  whole.swap(run_);
  switch (place_) {
    case Place::Summary:
      summaryText(whole);
      break;
    case Place::Label:
      property_.name +=
          whole.substr(0, kLongestList - std::min(kLongestList, property_.name.size()));
      break;
    case Place::List:
      list_ += whole.substr(0, kLongestList - std::min(kLongestList, list_.size()));
      break;
    case Place::Value:
      valueText(whole);
      break;
    case Place::Title:
      title_ += whole;
      break;
    case Place::Nothing:
      break;
  }
  stringBegins_ = false;
  run_ = last;
}

// Hands on the characters that have come since the last other call.
void CallReader::takeRun() {
  decoder_.finish(&run_);
  if (run_.empty()) return;
  switch (place_) {
    case Place::Summary:
      summaryText(run_);
      break;
    case Place::Label:
      property_.name += run_;
      break;
    case Place::List:
      if (list_.size() < kLongestList) list_ += run_;
      break;
    case Place::Value:
      valueText(run_);
      break;
    case Place::Title:
      title_ += run_;
      break;
    case Place::Nothing:
      break;
  }
  stringBegins_ = false;
  run_.clear();
}

void CallReader::setCharset(uint32_t set) {
  takeRun();
  decoder_.setCharset(set, &run_);
  stringBegins_ = true;
  if (place_ == Place::Value && known_ && known_->form == PropertyForm::Lines) beginLineField();
}

void CallReader::emitResourceString(uint32_t id) {
  takeRun();
  switch (place_) {
    case Place::Summary:
      if (inTypes_) types_.emplace_back(typeOfLabel(id));
      break;
    case Place::Label:
      property_.label = id;
      break;
    case Place::List:
      list_.clear();
      types_.emplace_back(typeOfLabel(id));
      break;
    case Place::Value:
      if (inSubLabel_) beginField(id);
      break;
    case Place::Title:
    case Place::Nothing:
      break;
  }
}

void CallReader::emitSpecial(uint32_t kind) {
  takeRun();
  const bool isHead = place_ == Place::Label || place_ == Place::List;
  if (kind == SoSpecialSeparator) {
    if (place_ == Place::Summary && !inTypes_) separator_ = true;
    if (place_ == Place::List) {
      // Behind an entry that came as text, which is a type of somebody's own.
      if (list_.starts_with(kTypesBegin)) list_.erase(0, kTypesBegin.size());
      if (!list_.empty()) types_.push_back(inSmallLetters(list_));
      list_.clear();
    }
  } else if (kind == SoSpecialLineBreak) {
    if (place_ == Place::Summary) summaryBreak();
    if (place_ == Place::Value) valueBreak();
    if (isHead) beginValue();
  } else if (kind == SoSpecialTab) {
    if (isHead) beginValue();
    if (place_ == Place::Value && !inSubLabel_) {
      if (tabsDue_ > 0) {
        --tabsDue_;
      } else {
        valueText("\t");
      }
    } else if (place_ == Place::Summary && !(breaks_ > 0)) {
      summaryText("\t");
    }
  }
}

// The summary.

void CallReader::beginHeading(uint32_t height) {
  std::vector<uint32_t> heights;
  for (const Style &style : styles_) {
    if (style.role == Role::Heading) heights.push_back(style.height);
  }
  std::sort(heights.begin(), heights.end(), std::greater<>());
  heading_ =
      static_cast<uint32_t>(std::find(heights.begin(), heights.end(), height) - heights.begin());
  kind_ = kindOfBlock();
  if (holding_ && heading_ == kSmallestHeading) held_.resize(block_ + 1);
}

// What the paragraph that begins shows. Only the notes tell all kinds: without them the paragraphs
// of a card in the smallest heading wait until all have come, and those of a calendar stay untold.
SummaryKind CallReader::kindOfBlock() const {
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

void CallReader::summaryText(std::string_view utf8) {
  const bool canHaveTypes = kind_ == SummaryKind::Telephone || kind_ == SummaryKind::Email ||
                            (kind_ == SummaryKind::Entry && format_ == VcardFormatVcard);
  if (canHaveTypes && stringBegins_) {
    if (!inTypes_ && utf8 == kTypesBegin) {
      inTypes_ = true;
      types_.clear();
      return;
    }
    if (inTypes_ && utf8 == kListEnd) {
      inTypes_ = false;
      return;
    }
  }
  if (inTypes_) {
    types_.push_back(inSmallLetters(utf8));
    return;
  }
  if (!lineOpen_) beginLine();
  if (summaryNote_.cut) return;
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

void CallReader::summaryBreak() {
  const bool isBlock = kind_ == SummaryKind::Telephone || kind_ == SummaryKind::Email ||
                       kind_ == SummaryKind::Url || kind_ == SummaryKind::Entry;
  if (isBlock) {
    endLine();
  } else if (lineOpen_) {
    ++breaks_;
  }
  separator_ = false;
}

void CallReader::beginLine() {
  lineOpen_ = true;
  separator_ = false;
  breaks_ = 0;
  lineHeld_ = holding_ && kind_ == SummaryKind::Entry && block_ < held_.size();
  if (lineHeld_) {
    held_[block_].emplace_back();
    return;
  }
  events_.beginSummaryLine(kind_, false);
  summaryNote_ = SummaryNote();
  if (!note_) return;
  if (kind_ == SummaryKind::Address) {
    for (uint32_t i = 0; i <= addressNumber_; ++i) notes_->nextSummary(addressRole_, &summaryNote_);
  } else if (kind_ >= SummaryKind::Organisation && kind_ <= SummaryKind::Url) {
    notes_->nextSummary(roleOf(kind_), &summaryNote_);
  }
}

void CallReader::endLine() {
  if (!lineOpen_) return;
  lineOpen_ = false;
  breaks_ = 0;
  if (lineHeld_) {
    held_[block_].back().types = types_;
    lineHeld_ = false;
  } else {
    if (summaryNote_.cut) putViewValue(summaryNote_);
    const bool told =
        note_ && !inPlace_ && kind_ >= SummaryKind::Telephone && kind_ <= SummaryKind::Url;
    events_.endSummaryLine(told ? summaryNote_.types : types_);
  }
  summaryNote_ = SummaryNote();
  types_.clear();
}

// The end of a paragraph.
void CallReader::endBlock() {
  endLine();
  inTypes_ = false;
  if (note_) {
    if (kind_ == SummaryKind::Address) completeAddresses();
    if (kind_ >= SummaryKind::Telephone && kind_ <= SummaryKind::Url) complete(kind_);
  }
  if (heading_ == kSmallestHeading || format_ == VcardFormatVcalendar) ++block_;
}

void CallReader::endSummary() {
  if (place_ != Place::Summary) return;
  endLine();
  if (holding_) putHeld(held_.size() > 3);
}

// Gives out the lines that waited. Four paragraphs are address, telephone numbers, mail addresses
// and URLs; without an address there are three.
void CallReader::putHeld(bool hasAddress) {
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

void CallReader::chooseAddress() {
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

void CallReader::complete(SummaryKind kind) {
  SummaryNote line;
  while (notes_->nextSummary(roleOf(kind), &line)) {
    events_.beginSummaryLine(kind, true);
    putViewValue(line);
    events_.endSummaryLine(line.types);
  }
}

void CallReader::completeAddresses() {
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
void CallReader::putViewValue(const SummaryNote &note) {
  std::string encoded(static_cast<size_t>(note.value.length), '\0');
  viewText_->readAt(note.value.offset, encoded.data(), encoded.size());
  const bool isAddress = note.role == SummaryRole::Address;
  const bool hasFields = isAddress || note.role == SummaryRole::Organisation;
  std::vector<std::string> fields(1);
  std::string_view rest = encoded;
  for (;;) {
    const size_t end = hasFields ? std::min(rest.find(';'), rest.size()) : rest.size();
    appendUnquoted(rest.substr(0, end), &fields.back());
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

// The listing.

void CallReader::beginLabel() {
  endSummary();
  endProperty();
  place_ = Place::Label;
  property_ = Property();
  list_.clear();
  types_.clear();
}

// The head is complete.
void CallReader::beginValue() {
  place_ = Place::Value;
  known_ = property_.label != 0 ? propertyOfLabel(property_.label, format_) : nullptr;
  takeList();
  line_.reset();
  muted_ = false;
  if (note_) join();
  if (!line_ && known_) property_.name = known_->name;
  propertyOpen_ = true;
  fields_ = 0;
  fieldOpen_ = skipsField_ = blankHeld_ = false;
  breaks_ = 0;
  tabsDue_ = 2;
  if (!muted_) events_.beginProperty(property_);
}

// The text behind the label: the rest of a list of types, or all parameters of a property that the
// filter doesn't know.
void CallReader::takeList() {
  if (property_.label == 0 && list_.starts_with(kParametersBegin) && list_.ends_with(kListEnd) &&
      list_.size() >= kParametersBegin.size() + kListEnd.size()) {
    const std::string_view text = std::string_view(list_).substr(
        kParametersBegin.size(), list_.size() - kParametersBegin.size() - kListEnd.size());
    std::vector<HeadParameter> split;
    splitParameters(text, ContentLines::MostParameters, &split);
    property_.parameters = parametersOf(split, VersionRules());
    property_.types = typesOf(property_.parameters);
  } else if (!types_.empty()) {
    property_.parameters.push_back({"TYPE", types_});
    property_.types = types_;
  }
  types_.clear();
}

void CallReader::join() {
  line_.emplace();
  if (!notes_->nextLine(&*line_)) {
    line_.reset();
    return;
  }
  const bool same = line_->callLabel == property_.label &&
                    (property_.label != 0 || line_->callName == property_.name);
  if (!same) {
    line_.reset();
    return;
  }
  muted_ = line_->dropped;
  property_.label = line_->label;
  property_.name = line_->name;
  property_.group = line_->group;
  property_.labelsGroup = line_->labelsGroup;
  property_.parameters = line_->parameters;
  if (!inPlace_) property_.types = line_->types;
  property_.extent = line_->extent;
  for (const auto &[group, label] : note_->groupLabels) {
    if (group == property_.group && !property_.labelsGroup) property_.groupLabel = label;
  }
  if (line_->callLabel != 0) known_ = knownProperty(line_->name, format_);
  if (line_->callLabel == 0 || !known_ || known_->label != line_->callLabel) {
    known_ = line_->callLabel != 0 ? propertyOfLabel(line_->callLabel, format_) : nullptr;
  }
}

void CallReader::putBreaks(uint32_t count) {
  for (uint32_t i = 0; i < count && !muted_ && !skipsField_; ++i) events_.lineBreak();
}

void CallReader::valueText(std::string_view utf8) {
  tabsDue_ = 0;
  if (inSubLabel_) return;
  if (blankHeld_ && breaks_ == 0 && !muted_) events_.text(" ");
  blankHeld_ = false;
  putBreaks(breaks_);
  breaks_ = 0;
  if (skipsField_) {
    late_.values.back() += utf8;
    return;
  }
  if (muted_) return;
  if (!line_ || line_->callLabel != 0) {
    events_.text(utf8);
    return;
  }
  // Plain text of a view: fields are divided in it, and a line end comes behind a blank.
  blankHeld_ = utf8.ends_with(' ');
  if (blankHeld_) utf8.remove_suffix(1);
  if (!line_->fieldsInText) {
    if (!utf8.empty()) events_.text(utf8);
    return;
  }
  const KnownProperty *row = knownProperty(line_->name, format_);
  for (;;) {
    if (fields_ == 0) beginField(row && !row->fields.empty() ? row->fields[0] : 0);
    const size_t end = std::min(utf8.find(FieldDivider), utf8.size());
    if (end > 0) events_.text(utf8.substr(0, end));
    if (end == utf8.size()) return;
    beginField(row && fields_ < row->fields.size() ? row->fields[fields_] : 0);
    utf8.remove_prefix(end + 1);
  }
}

void CallReader::valueBreak() {
  if (inSubLabel_) return;
  ++breaks_;
  const bool plainText = line_ ? line_->callLabel == 0 : property_.label == 0;
  tabsDue_ = plainText ? 0 : 2;
}

// Fields. The break behind a field belongs to it.

void CallReader::beginField(uint32_t label) {
  if (std::find(std::begin(kReferenceLabels), std::end(kReferenceLabels), label) !=
      std::end(kReferenceLabels)) {
    breaks_ = 0;
    tabsDue_ = 1;
    return;  // the text behind it is the value
  }
  endField();
  tabsDue_ = 1;
  if (property_.label == kAttendeeLabel) {
    breaks_ = 0;
    const auto *row = std::find_if(std::begin(kAttendeeRows), std::end(kAttendeeRows),
                                   [&](const AttendeeRow &r) { return r.label == label; });
    late_ = {row != std::end(kAttendeeRows) ? row->parameter : "", {""}};
    skipsField_ = fieldOpen_ = true;
    return;
  }
  // An alarm doesn't show its empty fields.
  if (known_ && known_->form == PropertyForm::Rows) {
    const auto fields = known_->fields;
    const auto at =
        static_cast<size_t>(std::find(fields.begin(), fields.end(), label) - fields.begin());
    for (; fields_ < at && at < fields.size(); ++fields_) {
      if (!muted_) events_.beginField(fields[fields_]);
    }
  }
  fieldOpen_ = true;
  ++fields_;
  if (!muted_) events_.beginField(label);
}

// A field of a value of lines begins with its string. The notes tell of those that are empty and
// don't show.
void CallReader::beginLineField() {
  if (fields_ > 0 && breaks_ == 0) return;  // the default set, behind a string
  endField();
  for (; line_ && fields_ < line_->fieldCount && (line_->emptyFields >> fields_ & 1) != 0;
       ++fields_) {
    if (!muted_) events_.beginField(0);
  }
  fieldOpen_ = true;
  ++fields_;
  tabsDue_ = 0;
  if (!muted_) events_.beginField(0);
}

void CallReader::endField() {
  if (!fieldOpen_) return;
  if (breaks_ > 1) putBreaks(breaks_ - 1);
  breaks_ = 0;
  if (skipsField_ && !muted_) events_.lateParameter(late_);
  fieldOpen_ = skipsField_ = false;
}

void CallReader::endProperty() {
  if (place_ == Place::Label || place_ == Place::List) beginValue();
  if (!propertyOpen_) return;
  propertyOpen_ = false;
  if (blankHeld_ && breaks_ <= 1 && !muted_) events_.text(" ");
  if (fieldOpen_) {
    endField();
  } else {
    // The last break is the paragraph's.
    const uint32_t layout = line_ && line_->breakAdded ? 2 : 1;
    if (breaks_ > layout) putBreaks(breaks_ - layout);
  }
  breaks_ = 0;
  if (line_ && line_->fieldsInText && !muted_) {
    const KnownProperty *row = knownProperty(line_->name, format_);
    do {
      beginField(row && fields_ < row->fields.size() ? row->fields[fields_] : 0);
    } while (row && fields_ < row->fields.size());
    fieldOpen_ = false;
  } else if (known_ && property_.label != kAttendeeLabel && !muted_) {
    const size_t count = known_->form == PropertyForm::Rows ? known_->fields.size() : 0;
    for (; fields_ < count; ++fields_) events_.beginField(known_->fields[fields_]);
    for (; line_ && fields_ < line_->fieldCount; ++fields_) events_.beginField(0);
  }
  if (!muted_) events_.endProperty();
  place_ = Place::Nothing;
}

// Objects.

void CallReader::setObjectData(uint32_t selector, uint64_t a, uint64_t b) {
  // An object's range reaches one byte past its text, an attachment's doesn't.
  if (selector == SoObjectDataRange) {
    dataStart_ = a;
    dataLength_ = b - 1;
  } else if (selector == SoObjectDataExtent) {
    dataStart_ = a;
    dataLength_ = b - a;
  }
}

void CallReader::emitObject(const VcardObjectRecord &) {
  takeRun();
  title_.clear();
  placeObject();
}

void CallReader::placeObject() {
  PlacedBase64 object(filter_, stream_, dataStart_, dataLength_);
  object.title = title_;
  if (line_ && line_->data) {
    if (line_->extent) object.extent = line_->data;
    object.size = line_->dataSize;
    object.declaredType = line_->dataType;
    for (const char *name : {"FILENAME", "X-FILENAME", "X-APPLE-FILENAME"}) {
      const std::string *title = valueOf(line_->parameters, name);
      if (title) {
        object.title = *title;
        break;
      }
    }
  }
  breaks_ = 0;
  if (!muted_) events_.object(object);
}

}  // namespace px

#include "host/source/property_view.h"

#include <nettle/base64.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "host/source/ascii_case.h"
#include "host/source/utf8.h"
#include "host/source/value_text.h"
#include "px/vcrd.h"

namespace px {
namespace {

// A value that is longer is written piece by piece, without a look at the whole.
constexpr size_t kLongestWhole = 64 * 1024;

constexpr size_t kLongestField = 255;  // of the filter, and so are its names
constexpr size_t kMostLines = 7;       // fields of a value of lines that it shows

constexpr std::string_view kEncoded = ";QUOTED-PRINTABLE:";
constexpr uint32_t kPictureLabel = 79402;

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (text.starts_with(' ') || text.starts_with('\t')) text.remove_prefix(1);
  return text;
}

// `text` cut to what the filter keeps, between characters.
std::string_view cut(std::string_view text) {
  if (text.size() <= kLongestField) return text;
  size_t size = kLongestField;
  while (size > 0 && (text[size] & 0xC0) == 0x80) --size;
  return text.substr(0, size);
}

void split(std::string_view text, char divider, std::vector<std::string_view> *fields) {
  fields->clear();
  for (;;) {
    const size_t end = std::min(text.find(divider), text.size());
    fields->push_back(text.substr(0, end));
    if (end == text.size()) return;
    text.remove_prefix(end + 1);
  }
}

// The parts of a name in the order in which it is said.
std::string joinedName(const std::vector<std::string_view> &parts) {
  std::string name;
  const auto add = [&](size_t i) {
    if (i >= parts.size() || parts[i].empty()) return;
    if (!name.empty()) name += ' ';
    name += parts[i];
  };
  for (const size_t i : {3, 1, 2, 0}) add(i);
  for (size_t i = 4; i < parts.size(); ++i) add(i);
  return name;
}

bool isBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
}

bool areBlank(const std::vector<std::string_view> &fields) {
  return std::all_of(fields.begin(), fields.end(), isBlank);
}

bool isBase64Digit(char c) {
  return ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z') || ('0' <= c && c <= '9') || c == '+' ||
         c == '/';
}

// The name of a known property, with the types that the filter writes for it.
std::string headInView(const KnownProperty &known, const std::vector<std::string> &types) {
  std::string head(known.name);
  const bool typed = known.role == SummaryRole::Address || known.role == SummaryRole::Label ||
                     known.role == SummaryRole::Telephone || known.role == SummaryRole::Email ||
                     known.form == PropertyForm::Key;
  if (!typed) return head;
  for (const std::string &type : types) {
    if (knownType(type) >= 0) head += ";TYPE=" + type;
  }
  return head;
}

// Whether "data:" can begin with this byte: escaped, behind a fold, or behind blanks.
bool canBeginData(int c) {
  return c == 'd' || c == 'D' || c == '\\' || c == '\r' || c == '\n' || c == ' ' || c == '\t';
}

// The type of the content that the parameters tell.
std::string declaredType(const std::vector<Parameter> &parameters) {
  for (const char *name : {"MEDIATYPE", "FMTTYPE", "TYPE"}) {
    for (const Parameter &parameter : parameters) {
      if (parameter.name != name) continue;
      for (const std::string &value : parameter.values) {
        if (value.find('/') != value.npos) return value;
      }
    }
  }
  return {};
}

std::string badByte(char c) {
  char text[64];
  std::snprintf(text, sizeof text, "the Base64 text ends at a byte that is none, 0x%02X",
                static_cast<unsigned char>(c));
  return text;
}

}  // namespace

void PropertyView::beginSection(int16_t format, const VersionRules &rules, const SourceFile *file,
                                SectionNote *section) {
  format_ = format;
  rules_ = rules;
  file_ = file;
  section_ = section;
  nameFromParts_.clear();
  groups_.clear();
}

// Whether the pass that looks for the summary takes the property's value for heads of lines.
bool PropertyView::isIndexed() const {
  return format_ == VcardFormatVcard && known_ && known_->role != SummaryRole::None;
}

void PropertyView::add(const ContentLine &line) {
  start_ = line.start;
  note_.emplace();
  note_->head = headOf(line);
  known_ = note_->head->known;
  transfer_ = note_->head->transfer;

  separator_ = 0;
  if (known_ && (known_->form == PropertyForm::Rows || known_->form == PropertyForm::Lines)) {
    const bool commas =
        format_ == VcardFormatVcalendar && rules_.escapes && known_->form == PropertyForm::Lines;
    separator_ = commas && known_->role == SummaryRole::None ? ',' : ';';
  }

  const bool isText = known_ && known_->form != PropertyForm::Media &&
                      known_->form != PropertyForm::Key && known_->form != PropertyForm::Attach;
  if (transfer_ != Transfer::QuotedPrintable && canBeginData(source_->peek()) &&
      takeDataPrefix(line)) {
    return addObject(true);
  }
  if (transfer_ == Transfer::Base64) {
    if (beginsAsBase64(line)) {
      if (!isText) return addObject(false);
      if (addBase64Text(line)) return;
    }
    fault("the value is no Base64 text: shown as it stands");
    transfer_ = Transfer::Plain;
    source_->moveTo(line.value);
  }
  addText(line);
}

// Notes where the line has ended.
void PropertyView::endValue(const ValueBytes &value) {
  note_->extent = extentOf(start_.position, value.end().position);
  tellOfBreak(value);
}

void PropertyView::tellOfBreak(const ValueBytes &value) {
  if (value.endsAtProperty()) (*faults_)(source_->place().line, FaultOfBreak);
}

const LineHead *PropertyView::headOf(const ContentLine &line) {
  const auto rules =
      static_cast<uint32_t>(format_ << 2 | rules_.escapes << 1 | rules_.caretEscapes);
  const LineHead *kept = notes_->heads()->find(line.head, rules);
  return kept ? kept : readHead(line, rules);
}

// Only a head that can be read without a fault is kept: each line tells its own.
const LineHead *PropertyView::readHead(const ContentLine &line, uint32_t rules) {
  std::vector<HeadParameter> given;
  const bool isWhole = splitParameters(line.parameters, ContentLines::MostParameters, &given);
  const bool isClosed = std::count(line.head.begin(), line.head.end(), '"') % 2 == 0;
  const bool good = isValidUtf8(line.head) && isWhole && isClosed && !line.cut;
  LineHead *head = notes_->heads()->put(good ? line.head : std::string_view(), rules);
  head->known = knownProperty(line.name, format_);
  head->label = head->known ? head->known->label : 0;
  head->name = headText(line.name);
  head->group = headText(line.group);
  head->transfer = transferOf(given);
  head->parameters = parametersOf(given, rules_);
  for (Parameter &parameter : head->parameters) {
    parameter.name = headText(parameter.name);
    for (std::string &value : parameter.values) value = headText(value);
  }
  const std::string *charset = valueOf(head->parameters, "CHARSET");
  head->namesOtherSet = charset && !equalsNoCase(*charset, "UTF-8");
  head->types = typesOf(head->parameters);
  if (head->known) head->inView = headInView(*head->known, head->types) + std::string(kEncoded);
  if (!isWhole) {
    fault("more than " + std::to_string(ContentLines::MostParameters) +
          " parameters: the others are left out");
  }
  if (line.cut) fault("the line's head is too long: some of its parameters are cut or left out");
  if (!isClosed) fault("a quote in the line's head isn't closed");
  return head;
}

std::string PropertyView::headText(std::string_view bytes) {
  if (isValidUtf8(bytes)) return std::string(bytes);
  decoder_.begin(file_->guessedCharset());
  std::string text;
  decoder_.put(bytes, &text);
  if (!decoder_.finish(&text)) fault("bytes in the line's head that are no text");
  return text;
}

std::optional<Extent> PropertyView::extentOf(uint64_t from, uint64_t end) const {
  if (!file_->positions) return std::nullopt;
  const uint64_t offset = file_->positions->filePosition(from);
  return Extent{offset, file_->positions->filePosition(end) - offset};
}

// Cards in cards.

bool PropertyView::takeAgentsCard(const ContentLine &line, SpoolFile *text) {
  if (!equalsNoCase(line.name, "AGENT") || !rules_.escapes) return false;
  if (agentValueAt(source_) != AgentValue::EscapedCard) return false;
  ValueBytes value(source_, transferOf(line), rules_.fold);
  ValueText unescape(true, 0);
  for (std::string_view piece = value.next(); !piece.empty(); piece = value.next()) {
    text_.clear();
    unescape.put(piece, &text_);
    text->append(text_);
  }
  tellOfBreak(value);
  text->append("\n");
  return true;
}

// Objects.

// Takes "data:...;base64," when the value begins so, or in a way that some writers take for that:
// "data:base64,", "data:image/png,base64,". Otherwise nothing is taken.
bool PropertyView::takeDataPrefix(const ContentLine &line) {
  constexpr std::string_view scheme = "data:";
  constexpr size_t longest = 1024;
  std::string prefix;
  size_t comma = 0;  // behind the first one
  while (prefix.size() < longest) {
    const int c = source_->peek();
    if (c < 0) break;
    if (c == '\r' || c == '\n') {
      if (takeFold(source_, Before::Text) != Behind::More) break;
      continue;
    }
    source_->skip(1);
    if (prefix.empty() && (c == ' ' || c == '\t')) continue;
    if (c != '\\') prefix += static_cast<char>(c);  // some writers escape what stands in a URI
    if (prefix.size() == scheme.size() && !equalsNoCase(prefix, scheme)) break;
    if (c != ',') continue;
    std::string_view text = prefix;
    text.remove_suffix(1);
    const std::string_view word = text.substr(text.find_last_of(":;,") + 1);
    if (equalsNoCase(word, "BASE64") && (comma == 0 || comma + word.size() == text.size())) {
      text.remove_prefix(scheme.size());
      text = text.substr(0, text.find_first_of(";,"));
      if (text.find('/') != text.npos) note_->dataType = headText(text);
      return true;
    }
    if (comma > 0) break;
    comma = prefix.size();
  }
  source_->moveTo(line.value);
  return false;
}

// Whether a value that says it is Base64 can be: whether what it begins with is.
bool PropertyView::beginsAsBase64(const ContentLine &line) {
  constexpr size_t enough = 64;
  ValueBytes value(source_, Transfer::Base64, rules_.fold);
  bool good = true;
  for (size_t seen = 0; good && seen < enough;) {
    const std::string_view piece = value.next().substr(0, enough - seen);
    if (piece.empty()) break;
    seen += piece.size();
    good = std::all_of(piece.begin(), piece.end(),
                       [](char c) { return isBase64Digit(c) || c == '='; });
  }
  source_->moveTo(line.value);
  return good;
}

void PropertyView::addObject(bool percents) {
  ValueBytes value(source_, Transfer::Base64, rules_.fold);
  const bool hasForm =
      known_ && (known_->form == PropertyForm::Media || known_->form == PropertyForm::Key ||
                 known_->form == PropertyForm::Attach);
  uint64_t digits = 0;
  uint64_t first = 0;
  uint64_t last = 0;
  bool padded = false;
  bool good = true;
  std::string clean;
  std::string escape;  // what has been read of %2B
  for (std::string_view piece = value.next(); !piece.empty() && good; piece = value.next()) {
    const uint64_t position = source_->place().position - piece.size();
    clean.clear();
    for (size_t at = 0; at < piece.size() && good; ++at) {
      char c = piece[at];
      if (percents && (c == '%' || !escape.empty())) {
        escape += c;
        if (escape.size() < 3) continue;
        unsigned code = 0;
        std::sscanf(escape.c_str(), "%%%2x", &code);
        c = static_cast<char>(code);
        escape.clear();
      }
      if (c == '=') {
        padded = true;
      } else if (!isBase64Digit(c) || padded) {
        fault(padded ? "text behind the end of the Base64 text" : badByte(c));
        good = false;
        break;
      } else {
        clean += c;
      }
      if (first == 0) first = position + at;
      last = position + at + 1;
    }
    if (clean.empty()) continue;
    if (digits == 0) {
      if (!hasForm) {
        view_->put("PHOTO;BASE64:");
        note_->callLabel = kPictureLabel;
      } else {
        note_->callLabel = known_->label;
        view_->put(headInView(*known_, note_->head->types));
        view_->put(known_->form == PropertyForm::Attach ? ";VALUE=BINARY;BASE64:" : ";BASE64:");
      }
    }
    view_->put(clean);
    digits += clean.size();
  }
  if (good && !escape.empty()) {
    fault("the Base64 text ends within an escape");
  }
  if (!good) value.skip();
  endValue(value);
  if (digits == 0) return addWhole({});
  view_->put("=\n");
  note_->data = extentOf(first, last);
  if (!note_->data) note_->data = Extent();
  note_->dataSize = digits * 3 / 4;
  if (note_->dataType.empty()) note_->dataType = declaredType(note_->head->parameters);
  notes_->add(*note_);
}

// Texts.

void PropertyView::addText(const ContentLine &line) {
  ValueBytes value(source_, transfer_, rules_.fold, separator_ == ';');
  std::string_view text = value.next();
  if (!value.ended()) {
    if (!collect(text, &value)) return addLong(line, &value);
    text = raw_;
  }
  endValue(value);
  addRead(text);
}

// Answers false when no text comes of the value.
bool PropertyView::addBase64Text(const ContentLine &line) {
  ValueBytes value(source_, transfer_, rules_.fold);
  if (!collect(value.next(), &value)) {
    source_->moveTo(line.value);
    addObject(false);
    return true;
  }
  if (!decodeBase64()) return false;
  endValue(value);
  addRead(raw_);
  return true;
}

// Writes a value whose bytes are given.
void PropertyView::addRead(std::string_view text) {
  const bool valid = isValidUtf8(text);
  if (!valid || note_->head->namesOtherSet) {
    beginDecoder(valid);
    decoded_.clear();
    decoder_.put(text, &decoded_);
    if (!decoder_.finish(&decoded_)) fault("bytes that are no text in the value's character set");
    text = decoded_;
  }
  divider_ = separator_;
  if (plainLength(text) < text.size()) {
    divider_ = FieldDivider;
    ValueText meaning(rules_.escapes, separator_);
    text_.clear();
    meaning.put(text, &text_);
    meaning.finish(&text_);
    text = text_;
  }
  // The filter drops the blanks before a value that it knows.
  if (known_ && transfer_ == Transfer::Plain) text = withoutLeadingBlanks(text);
  addWhole(text);
}

// Reads the value behind its first piece; false when all of it is longer than what is looked at as
// a whole.
bool PropertyView::collect(std::string_view first, ValueBytes *value) {
  raw_ = first;
  while (raw_.size() <= kLongestWhole) {
    if (value->ended()) return true;
    raw_ += value->next();
  }
  return false;
}

// False where raw_ is no Base64, or no text comes of it: words are made of the same letters.
bool PropertyView::decodeBase64() {
  base64_decode_ctx context;
  base64_decode_init(&context);
  std::string bytes(BASE64_DECODE_LENGTH(raw_.size()), '\0');
  size_t size = bytes.size();
  if (!base64_decode_update(&context, &size, reinterpret_cast<uint8_t *>(bytes.data()), raw_.size(),
                            raw_.data())) {
    return false;
  }
  bytes.resize(size);
  const auto isControl = [](char c) {
    return ('\0' <= c && c < ' ' && c != '\t' && c != '\n' && c != '\r') || c == '\x7F';
  };
  if (!note_->head->namesOtherSet && std::any_of(bytes.begin(), bytes.end(), isControl)) {
    return false;
  }
  raw_ = std::move(bytes);
  return true;
}

void PropertyView::beginDecoder(bool isUtf8) {
  const std::string *charset = valueOf(note_->head->parameters, "CHARSET");
  if (charset && !(file_->unicode && transfer_ == Transfer::Plain)) {
    if (equalsNoCase(*charset, "UTF-8")) return decoder_.beginUtf8();
    if (decoder_.begin(*charset)) return;
    fault("character set " + *charset + " is not known");
  }
  if (isUtf8) return decoder_.beginUtf8();
  decoder_.begin(file_->guessedCharset());
}

// Writes a value, whose text is given.
void PropertyView::addWhole(std::string_view text) {
  if (!note_->head->group.empty()) noteGroup(text);
  if (!known_) return putPlainLine(text);
  if (separator_ != 0) return addFields(text);

  const SummaryRole role = isIndexed() ? known_->role : SummaryRole::None;
  const bool oneLine =
      role == SummaryRole::Telephone || role == SummaryRole::Email || role == SummaryRole::Url;
  const bool single = known_->form == PropertyForm::Single;
  const bool cutOff = single && (text.find(';') != text.npos || text.size() > kLongestField);
  const bool version = known_->name == "VERSION";
  const bool brokenOff = (oneLine || single || version) && text.find('\n') != text.npos;
  if (oneLine && brokenOff) {
    putForSummary([this, text] {
      std::string line(text);
      std::replace(line.begin(), line.end(), '\n', ' ');
      putText(line);
    });
  }
  const bool takesPlace = known_->role != SummaryRole::None && isBlank(text);
  if (takesPlace || cutOff || brokenOff) return putPlainLine(text);
  note_->callLabel = known_->label;
  if (single || version) {
    // With the blank no version is known, and the filter stays with its simplest dialect.
    view_->put(known_->name);
    view_->put(version ? ": " : ":");
    view_->put(text);
    view_->put("\n");
    notes_->add(*note_);
    return;
  }
  putText(text);
}

void PropertyView::putText(std::string_view text) {
  view_->put(note_->head->inView);
  const uint64_t start = view_->size();
  view_->putQuoted(text);
  // Between two URLs the summary has nothing.
  note_->breakAdded = isIndexed() && known_->role == SummaryRole::Url;
  endLine(start);
}

// An X-ABLabel line tells how the other lines of its group are called: the first one does.
void PropertyView::noteGroup(std::string_view text) {
  std::vector<std::pair<std::string, std::string>> &labels = section_->groupLabels;
  const bool known = std::find(groups_.begin(), groups_.end(), note_->head->group) != groups_.end();
  if (!equalsNoCase(note_->head->name, "X-ABLABEL")) {
    if (!known && groups_.size() < SectionNote::MaxGroupLabels)
      groups_.push_back(note_->head->group);
  } else if (known && text.size() <= kLongestField &&
             std::none_of(labels.begin(), labels.end(), [this](const auto &label) {
               return label.first == note_->head->group;
             })) {
    labels.emplace_back(note_->head->group, text);
    note_->labelsGroup = true;
  }
}

// Ends a line whose value began at `valueStart`, and notes it. `isCut`: the filter will not show
// all of it in the summary.
void PropertyView::endLine(uint64_t valueStart, bool isCut) {
  const uint64_t valueEnd = view_->size();
  view_->put(note_->breakAdded ? "=0A\n" : "\n");
  notes_->add(*note_);
  if (!known_ || known_->role == SummaryRole::None) return;
  section_->summaryRoles |= 1u << static_cast<int>(known_->role);
  if (format_ == VcardFormatVcard) {
    notes_->addSummary(known_->role, note_->head->types, {valueStart, valueEnd - valueStart},
                       isCut);
  }
}

void PropertyView::addLong(const ContentLine &line, ValueBytes *value) {
  // The set must be known before the first character is written.
  size_t open;
  bool utf8 = isUtf8(raw_, &open);
  for (std::string rest = raw_.substr(raw_.size() - open);;) {
    const std::string_view piece = value->next();
    if (piece.empty()) {
      utf8 = utf8 && rest.empty();
      break;
    }
    if (!utf8) continue;
    rest += piece;
    utf8 = isUtf8(rest, &open);
    rest.erase(0, rest.size() - open);
  }
  endValue(*value);

  const bool quoted = known_ && separator_ == 0 && known_->form != PropertyForm::Single &&
                      known_->name != "VERSION" &&
                      !(isIndexed() && known_->role >= SummaryRole::Telephone);
  if (quoted) {
    note_->callLabel = known_->label;
    view_->put(note_->head->inView);
  } else {
    note_->fieldsInText = separator_ != 0;
    putPlainHead();
  }
  const uint64_t start = view_->size();
  source_->moveTo(line.value);
  ValueBytes again(source_, transfer_, rules_.fold, separator_ == ';');
  ValueText meaning(rules_.escapes, separator_);
  beginDecoder(utf8);
  const auto put = [&] {
    quoted ? view_->putQuoted(text_) : view_->putPlain(text_);
    decoded_.clear();
    text_.clear();
  };
  decoded_.clear();
  text_.clear();
  for (std::string_view piece = again.next(); !piece.empty(); piece = again.next()) {
    decoder_.put(piece, &decoded_);
    meaning.put(decoded_, &text_);
    put();
  }
  if (!decoder_.finish(&decoded_)) fault("bytes that are no text in the value's character set");
  meaning.put(decoded_, &text_);
  meaning.finish(&text_);
  put();
  if (quoted) return endLine(start);
  view_->put("\n");
  notes_->add(*note_);
}

// Writes the fields in `text`.
void PropertyView::addFields(std::string_view text) {
  std::vector<std::string_view> &fields = fields_;
  split(text, divider_, &fields);
  if (transfer_ == Transfer::Plain) {
    for (std::string_view &field : fields) field = withoutLeadingBlanks(field);
  }
  const bool rows = known_->form == PropertyForm::Rows;
  const size_t most = rows ? known_->fields.size() : kMostLines;
  while (fields.size() > most && fields.back().empty()) fields.pop_back();
  const bool isCut =
      fields.size() > most || std::any_of(fields.begin(), fields.end(),
                                          [](auto field) { return field.size() > kLongestField; });
  const bool takesPlace = isIndexed() && areBlank(fields);
  if (isCut || takesPlace) {
    if (!takesPlace && isIndexed()) {
      putForSummary([&] {
        // Behind a field's last byte that the filter keeps, a line end would end the value.
        std::vector<std::string> lines(fields.begin(), fields.end());
        for (std::string &line : lines) std::replace(line.begin(), line.end(), '\n', FieldDivider);
        putFields({lines.begin(), lines.end()}, true);
      });
    }
    note_->fieldsInText = true;
    std::string divided(text);
    std::replace(divided.begin(), divided.end(), divider_, FieldDivider);
    putPlainLine(divided);
  } else {
    note_->callLabel = known_->label;
    if (!rows) {
      note_->fieldCount = static_cast<uint32_t>(fields.size());
      for (size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].empty()) note_->emptyFields |= 1u << i;
      }
    }
    putFields(fields, false);
  }
  const bool isName = isIndexed() && known_->role == SummaryRole::Name;
  if (isName && nameFromParts_.empty() && !section_->has(SummaryRole::FormattedName)) {
    nameFromParts_ = joinedName(fields);
  }
}

void PropertyView::putFields(const std::vector<std::string_view> &fields, bool isCut) {
  view_->put(note_->head->inView);
  const uint64_t start = view_->size();
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) view_->put(";");
    view_->putField(fields[i], i == 0);
  }
  endLine(start, isCut);
  if (isIndexed()) view_->putAbsorber();
}

// Has `put` write the property in the form that the summary can show, in a line that the listing
// drops.
template <class Put>
void PropertyView::putForSummary(Put put) {
  const LineNote whole = std::move(*note_);
  note_.emplace();
  note_->dropped = true;
  note_->callLabel = known_->label;
  note_->head = whole.head;
  put();
  note_ = whole;
}

// Without a formatted name the summary's is made of the name's parts. Without those it is empty and
// not left out: the filter reads organisation and address as quoted-printable only where the name
// was.
void PropertyView::endSection() {
  if (format_ != VcardFormatVcard || section_->has(SummaryRole::FormattedName)) return;
  known_ = knownProperty("FN", format_);
  note_.emplace();
  note_->dropped = true;
  note_->callLabel = known_->label;
  LineHead *head = notes_->heads()->put({}, 0);
  head->inView = headInView(*known_, {}) + std::string(kEncoded);
  note_->head = head;
  putText(nameFromParts_);
}

void PropertyView::putPlainLine(std::string_view text) {
  putPlainHead();
  view_->putPlain(text);
  view_->put("\n");
  notes_->add(*note_);
}

// The property's name if the filter doesn't know it, so that it writes the name itself.
void PropertyView::putPlainHead() {
  // AGENT stands in no row, and the filter never shows one.
  if (known_ || equalsNoCase(note_->head->name, "AGENT")) {
    note_->callName = "X-" + inCapitals(note_->head->name);
  } else {
    // A colon between quotes would end the name.
    note_->callName = cut(note_->head->name);
    std::erase(note_->callName, ':');
  }
  note_->callLabel = 0;
  view_->put(note_->callName + ":");
}

}  // namespace px

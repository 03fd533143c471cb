#include "host/source/plain_cards.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/source/ascii_case.h"
#include "host/source/byte_search.h"
#include "host/source/byte_source.h"
#include "host/source/content_lines.h"
#include "host/source/line_parameters.h"
#include "host/source/property_table.h"
#include "host/source/utf8.h"
#include "px/vcrd.h"

namespace px {
namespace {

constexpr size_t kLongestField = 255;
constexpr uint32_t kSummarySlots = 10;  // telephone numbers and mail addresses of a summary
constexpr uint32_t kVersionLabel = 79411;
constexpr std::string_view kVersion = "VERSION:2.1";

bool isNameCharacter(char c) {
  return ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z') || ('0' <= c && c <= '9') || c == '-';
}

bool isBase64Digit(char c) {
  return ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z') || ('0' <= c && c <= '9') || c == '+' ||
         c == '/';
}

bool isHexDigit(char c) { return ('0' <= c && c <= '9') || ('A' <= c && c <= 'F'); }

// Text without control characters, whose first character is no blank.
bool isPlainText(std::string_view text) {
  const auto isControl = [](ByteVector b) { return ByteVector(b < 0x20); };
  return !text.starts_with(' ') && lengthBefore(text, isControl) == text.size() &&
         isValidUtf8(text);
}

// Quoted-printable in one line, which says plain text or line ends.
bool isPlainQuoted(std::string_view text) {
  std::string decoded;
  for (size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '=') {
      decoded += text[at];
      continue;
    }
    if (at + 2 >= text.size() || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2]))
      return false;
    const std::string_view digits = text.substr(at + 1, 2);
    if (digits == "0D" && !text.substr(at + 3).starts_with("=0A")) return false;
    if (digits != "0D" && digits != "0A") {
      decoded += static_cast<char>(std::stoi(std::string(digits), nullptr, 16));
    }
    at += 2;
  }
  return isPlainText(decoded);
}

// The pass that looks for the summary takes such a value for heads of lines. In one without the
// characters that mean something there it finds nothing.
bool isPlainIndexed(std::string_view value, SummaryRole role) {
  if (value.empty() || value.find('=') != value.npos) return false;
  const size_t divider =
      lengthBefore(value, [](ByteVector b) { return isByte(b, ':') | isByte(b, ';'); });
  if (divider == value.size()) return true;
  const std::string_view scheme = value.substr(0, divider);
  const bool isWeb = scheme == "http" || scheme == "https";
  return role == SummaryRole::Url && value[divider] == ':' && isWeb;
}

// Fields as a value of this form has them, none of which means something as a parameter, nor the
// last one nothing: the line end behind it would be passed over.
bool arePlainFields(std::string_view value, const KnownProperty &known) {
  const auto hasMeaning = [](ByteVector b) {
    return isByte(b, ':') | isByte(b, '=') | isByte(b, '\\');
  };
  if (value.empty() || lengthBefore(value, hasMeaning) < value.size()) return false;
  const bool rows = known.form == PropertyForm::Rows;
  const size_t most = rows ? known.fields.size() : 7;
  size_t count = 0;
  for (;;) {
    const size_t end = std::min(value.find(';'), value.size());
    const std::string_view field = value.substr(0, end);
    const bool last = end == value.size();
    const bool isEmpty = field.find_first_not_of(' ') == field.npos;
    if (++count > most || field.size() > kLongestField || field.starts_with(' ')) return false;
    if (isEmpty && (last || !rows || known.role == SummaryRole::Organisation)) return false;
    std::string word(field);
    std::erase(word, ' ');
    const bool isName = count == 1 && knownProperty(word, VcardFormatVcard) != nullptr;
    if (isParameterWord(word) || isName || equalsNoCase(word, "END")) return false;
    if (last) return true;
    value.remove_prefix(end + 1);
  }
}

class PlainReader {
 public:
  PlainReader(VcardIo *file, LineNotes *notes)
      : source_(file, std::numeric_limits<int64_t>::max()), notes_(*notes) {}

  bool read() {
    bool any = false;
    for (;;) {
      while (source_.takeLineEnd()) {
      }
      if (source_.peek() < 0) return any;
      if (!readCard()) return false;
      any = true;
    }
  }

 private:
  // The line at which the source stands, if it is short; it isn't taken.
  std::optional<std::string_view> line() {
    bool ended;
    std::string_view bytes = source_.readyInLine(&ended);
    if (!ended) {
      constexpr size_t longest = 8 * 1024;
      source_.lookAhead(longest);
      bytes = source_.readyInLine(&ended);
      if (!ended && bytes.size() >= longest) return std::nullopt;
    }
    return bytes;
  }

  void take(std::string_view line) {
    source_.skip(line.size());
    source_.takeLineEnd();
  }

  bool takeLine(std::string_view wanted) {
    const auto text = line();
    if (!text || !equalsNoCase(*text, wanted)) return false;
    take(*text);
    return true;
  }

  bool readCard() {
    const uint64_t begin = source_.place().position;
    section_ = SectionNote();
    section_.component = "VCARD";
    section_.version = "2.1";
    section_.format = VcardFormatVcard;
    roles_ = {};
    if (!takeLine("BEGIN:VCARD")) return false;
    // In front of the first line the filter has what the summary left, so it has to be one that
    // shows nothing of that.
    const auto first = line();
    if (!first || !equalsNoCase(*first, kVersion)) return false;
    while (!takeLine("END:VCARD")) {
      if (!readProperty()) return false;
    }
    const bool oneAddress = roles_[static_cast<size_t>(SummaryRole::Address)] +
                                roles_[static_cast<size_t>(SummaryRole::Label)] <=
                            1;
    if (!oneAddress || roles_[static_cast<size_t>(SummaryRole::Url)] > 1) return false;
    section_.extent = Extent{begin, source_.place().position - begin};
    notes_.add(section_);
    return true;
  }

  bool readProperty() {
    const auto text = line();
    if (!text) return false;
    const uint64_t start = source_.place().position;
    const size_t colon = text->find(':');
    if (colon == text->npos) return false;
    note_.emplace();
    note_->head = headOf(text->substr(0, colon));
    if (!note_->head) return false;
    known_ = note_->head->known;
    if (note_->head->label == kVersionLabel && !equalsNoCase(*text, kVersion)) return false;
    note_->callLabel = note_->head->label;
    if (!known_) note_->callName = note_->head->name;
    const Transfer transfer = note_->head->transfer;
    if (transfer == Transfer::Base64) return readObject(start, *text, colon + 1);

    const std::string_view value = text->substr(colon + 1);
    if (!isPlainValue(value, transfer)) return false;
    note_->extent = Extent{start, text->size()};
    take(*text);
    if (source_.peek() == ' ' || source_.peek() == '\t') return false;
    notes_.add(*note_);
    return countRole();
  }

  // Null for a head that the filter would read in its own way.
  const LineHead *headOf(std::string_view text) {
    LineHeads *heads = notes_.heads();
    if (const LineHead *kept = heads->find(text, 0)) return kept;
    const size_t nameEnd = std::min(text.find(';'), text.size());
    const std::string_view name = text.substr(0, nameEnd);
    if (name.empty() || name.size() > kLongestField ||
        !std::all_of(name.begin(), name.end(), isNameCharacter) || equalsNoCase(name, "BEGIN") ||
        equalsNoCase(name, "END") || equalsNoCase(name, "AGENT")) {
      return nullptr;
    }
    std::vector<HeadParameter> parameters;
    if (nameEnd < text.size() &&
        !splitParameters(text.substr(nameEnd + 1), ContentLines::MostParameters, &parameters)) {
      return nullptr;
    }
    for (const HeadParameter &parameter : parameters) {
      const bool named = !parameter.name.empty();
      if (named && !equalsNoCase(parameter.name, "TYPE") &&
          !equalsNoCase(parameter.name, "ENCODING")) {
        return nullptr;
      }
      if (!isParameterWord(parameter.value)) return nullptr;
      const bool isType = knownType(parameter.value) >= 0;
      if (named && isType != equalsNoCase(parameter.name, "TYPE")) return nullptr;
      if (!isType && transferOf({parameter}) == Transfer::Plain) return nullptr;
    }
    LineHead *head = heads->put(text, 0);
    head->known = knownProperty(name, VcardFormatVcard);
    head->label = head->known ? head->known->label : 0;
    head->name = name;
    head->transfer = transferOf(parameters);
    head->parameters = parametersOf(parameters, VersionRules());
    head->types = typesOf(head->parameters);
    return head;
  }

  bool isPlainValue(std::string_view value, Transfer transfer) const {
    const bool quoted = transfer == Transfer::QuotedPrintable;
    if (!isPlainText(value)) return false;
    if (!known_) return !quoted;
    const bool indexed = known_->role != SummaryRole::None;
    if (quoted) return !indexed && known_->form != PropertyForm::Single && isPlainQuoted(value);
    switch (known_->form) {
      case PropertyForm::Rows:
      case PropertyForm::Lines:
        return arePlainFields(value, *known_);
      case PropertyForm::Single:
        return value.find(';') == value.npos && value.size() <= kLongestField;
      default:
        return !indexed || isPlainIndexed(value, known_->role);
    }
  }

  // Base64 on this line, and on lines that begin with a blank, up to a blank line. A blank behind a
  // digit ends it for the filter.
  bool readObject(uint64_t start, std::string_view text, size_t valueStart) {
    const bool placed =
        known_ && (known_->form == PropertyForm::Media || known_->form == PropertyForm::Key);
    if (!placed) return false;
    uint64_t digits = 0;
    uint64_t first = 0;
    uint64_t last = 0;
    bool padded = false;
    std::string_view bytes = text.substr(valueStart);
    source_.skip(valueStart);
    for (;;) {
      const uint64_t position = source_.place().position;
      const size_t head = std::min(bytes.find_first_not_of(" \t"), bytes.size());
      for (size_t at = head; at < bytes.size(); ++at) {
        const char c = bytes[at];
        if (c == '=') {
          padded = true;
        } else if (padded || !isBase64Digit(c)) {
          return false;
        } else {
          ++digits;
        }
        if (first == 0) first = position + at;
        last = position + at + 1;
      }
      source_.skip(bytes.size());
      const uint64_t end = source_.place().position;
      source_.takeLineEnd();
      const int next = source_.peek();
      if (next != ' ' && next != '\t') {
        // Without a blank line only a "=" shows the filter the end at once.
        if (digits == 0 || (next != '\r' && next != '\n' && !padded)) return false;
        while (source_.takeLineEnd()) {
        }
        if (source_.peek() == ' ' || source_.peek() == '\t') return false;
        note_->extent = Extent{start, end - start};
        break;
      }
      if (padded) return false;
      const auto more = line();
      if (!more) return false;
      bytes = *more;
    }
    note_->data = Extent{first, last - first};
    note_->dataSize = digits * 3 / 4;
    notes_.add(*note_);
    return true;
  }

  // Notes what the summary has of the line; false when the summary has no room for it.
  bool countRole() {
    if (!known_ || known_->role == SummaryRole::None) return true;
    section_.summaryRoles |= 1u << static_cast<int>(known_->role);
    notes_.addSummary(known_->role, note_->head->types, {}, false);
    return ++roles_[static_cast<size_t>(known_->role)] <= kSummarySlots;
  }

  ByteSource source_;
  LineNotes &notes_;
  SectionNote section_;
  std::array<uint32_t, SummaryRoleCount> roles_{};

  // Of the current line.
  const KnownProperty *known_ = nullptr;
  std::optional<LineNote> note_;
};

}  // namespace

bool readPlainCards(VcardIo *file, LineNotes *notes) { return PlainReader(file, notes).read(); }

}  // namespace px

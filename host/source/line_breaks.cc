#include "host/source/line_breaks.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/source/line_parameters.h"
#include "host/source/property_table.h"
#include "px/vcrd.h"

namespace px {
namespace {

constexpr size_t kNarrowest = 72;  // columns in which writers that break lines write
constexpr size_t kLongestLook = 1024;

// Those that the filter doesn't know, between blanks.
constexpr std::string_view kOtherNames =
    " ACKNOWLEDGED ACTION AGENT ANNIVERSARY BIRTHPLACE CALADRURI CALSCALE CALURI CLIENTPIDMAP "
    "COLOR COMMENT CONFERENCE CONTACT CONTACT-URI CREATED DAYLIGHT DEATHDATE DEATHPLACE "
    "DTSTAMP DURATION EXPERTISE FBURL FREEBUSY GENDER GRAMGENDER HOBBY IMAGE IMPP INTEREST "
    "KIND LANG LANGUAGE MEMBER METHOD NAME NICKNAME ORG-DIRECTORY ORGANIZER PERCENT-COMPLETE "
    "PRODID PROFILE PRONOUNS RECURRENCE-ID REFRESH-INTERVAL RELATED REPEAT REQUEST-STATUS "
    "SOCIALPROFILE SORT-STRING SOURCE TRIGGER TZID TZNAME TZOFFSETFROM TZOFFSETTO TZURL XML ";

constexpr std::string_view kComponents =
    " VCARD VCALENDAR VEVENT VTODO VJOURNAL VFREEBUSY VTIMEZONE VALARM STANDARD DAYLIGHT ";

enum class Look { Text, Perhaps, Surely };

bool isNameCharacter(char c) {
  return ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z') || ('0' <= c && c <= '9') || c == '-';
}

bool isName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isNameCharacter);
}

bool isOneOf(std::string_view name, std::string_view names) {
  return isName(name) && names.find(' ' + std::string(name) + ' ') != names.npos;
}

bool isPropertyName(std::string_view name) {
  if (name.starts_with("X-")) return true;
  const auto isSmall = [](char c) { return 'a' <= c && c <= 'z'; };
  return std::none_of(name.begin(), name.end(), isSmall) &&
         (knownProperty(name, VcardFormatVcalendar) != nullptr || isOneOf(name, kOtherNames));
}

bool isParameter(const HeadParameter &parameter) {
  return parameter.name.empty()
             ? isParameterWord(parameter.value) || parameter.value.starts_with("X-")
             : isName(parameter.name);
}

// The look of a line that is BEGIN or END of a component alone. Behind an END that is meant the
// text ends, or another component does or begins; in a text about cards something else comes. In
// one with an escaped card, that goes on behind BEGIN.
Look lookOfFrame(std::string_view name, std::string_view component, std::string_view behind) {
  behind.remove_prefix(std::min(behind.find_first_not_of(" \t\r\n"), behind.size()));
  if (name == "BEGIN") return behind.starts_with('\\') ? Look::Text : Look::Surely;
  const bool ends = behind.starts_with("END:") && !behind.substr(4).starts_with(component);
  return ends || behind.empty() || behind.starts_with("BEGIN:") ? Look::Surely : Look::Perhaps;
}

// The look of a line whose name ends at `nameEnd`, before what comes behind it.
Look lookOf(std::string_view line, size_t nameEnd, std::string_view behind) {
  const size_t colon = line.find(':', nameEnd);
  if (colon == line.npos) return Look::Text;
  const std::string_view value = line.substr(colon + 1);
  std::string_view name = line.substr(0, nameEnd);
  if (name == "BEGIN" || name == "END") {
    const std::string_view component = value.substr(0, value.find_last_not_of(" \t") + 1);
    const bool isAlone = nameEnd == colon && isOneOf(component, kComponents);
    return isAlone ? lookOfFrame(name, component, behind) : Look::Text;
  }
  const size_t period = name.rfind('.');
  if (period != name.npos && isName(name.substr(0, period))) name.remove_prefix(period + 1);
  if (!isName(name) || !isPropertyName(name)) return Look::Text;
  if (nameEnd == colon) {
    // A fold within FN leaves this name, which is nothing without fields.
    const size_t field = value.find(';');
    const bool hasFields = field != value.npos && !value.substr(0, field).ends_with('\\');
    return name == "N" && !hasFields ? Look::Text : Look::Perhaps;
  }
  std::vector<HeadParameter> parameters;
  splitParameters(line.substr(nameEnd + 1, colon - nameEnd - 1), ContentLines::MostParameters,
                  &parameters);
  if (std::all_of(parameters.begin(), parameters.end(), isParameter)) return Look::Surely;
  return line.substr(0, colon).find_first_of(" \t") == line.npos ? Look::Perhaps : Look::Text;
}

// Whether a soft break ends the line, of an encoding that it doesn't name.
bool endsSoftly(std::string_view line) {
  if (!line.ends_with('=') || line.ends_with("==")) return false;
  const std::string_view head = line.substr(0, line.find(':'));
  std::vector<HeadParameter> parameters;
  splitParameters(head, ContentLines::MostParameters, &parameters);
  return transferOf(parameters) == Transfer::Plain;
}

// Whether a property stands at `source`, behind a break in a line that had as many columns before
// it.
bool isProperty(ByteSource *source, uint64_t columns, Before before, bool isSoft) {
  constexpr size_t longestName = 64;
  if (before == Before::Unfinished) return false;
  std::string_view line = source->lookAhead(kLongestLook);
  while (line.starts_with(' ') || line.starts_with('\t')) line.remove_prefix(1);
  const auto isInName = [](char c) { return isNameCharacter(c) || c == '.'; };
  const std::string_view most = line.substr(0, longestName);
  const auto nameEnd =
      static_cast<size_t>(std::find_if_not(most.begin(), most.end(), isInName) - most.begin());
  if (nameEnd == most.size() || (line[nameEnd] != ':' && line[nameEnd] != ';')) return false;
  const size_t end = std::min(line.find_first_of("\r\n"), line.size());
  const std::string_view behind = line.substr(end);
  line = line.substr(0, end);

  const Look look = lookOf(line, nameEnd, behind);
  if (look == Look::Text) return false;
  const size_t word = std::min(line.find_first_of(" \t"), line.size());
  const bool hasReason = before == Before::EncodedLineEnd || columns + word >= kNarrowest;
  return !hasReason || (look == Look::Surely && !(isSoft && endsSoftly(line)));
}

}  // namespace

Behind takeFold(ByteSource *source, Before before) {
  const uint64_t columns = source->place().column;
  while (source->takeLineEnd()) {
  }
  if (source->peek() != ' ' && source->peek() != '\t') return Behind::End;
  source->skip(1);
  return isProperty(source, columns, before, false) ? Behind::Property : Behind::More;
}

Behind takeSoftBreak(ByteSource *source, Before before) {
  const uint64_t columns = source->place().column;
  // Some writers end their lines with two CRs and an LF.
  if (source->lookAhead(3) == "\r\r\n") source->takeLineEnd();
  source->takeLineEnd();
  return isProperty(source, columns, before, true) ? Behind::Property : Behind::More;
}

}  // namespace px

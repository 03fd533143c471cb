#include "host/source/property_table.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "host/source/ascii_case.h"
#include "px/vcrd.h"

namespace px {
namespace {

using enum PropertyForm;
using Role = SummaryRole;

constexpr uint32_t kNameFields[] = {79412, 79413, 79414, 79415, 79416};
constexpr uint32_t kAddressFields[] = {79417, 79418, 79419, 79420, 79421, 79422, 79423};
constexpr uint32_t kSoundAlarm[] = {79355, 79356, 79357, 79358};
constexpr uint32_t kMailAlarm[] = {79355, 79356, 79357, 79745, 79359};
constexpr uint32_t kOtherAlarm[] = {79355, 79356, 79357, 79359};

constexpr KnownProperty kBoth[] = {
    {"N", 79399, Rows, Role::Name, kNameFields},
    {"FN", 79393, Text, Role::FormattedName},
    {"ADR", 79388, Rows, Role::Address, kAddressFields},
    {"LABEL", 79397, Text, Role::Label},
    {"BDAY", 79391},
    {"MAILER", 79398},
    {"TZ", 79408},
    {"VERSION", 79411},
    {"REV", 79403, Single},
    {"TEL", 79406, Text, Role::Telephone},
    {"ORG", 79401, Lines, Role::Organisation},
    {"TITLE", 79407, Text, Role::Title},
    {"ROLE", 79404},
    {"EMAIL", 79392, Text, Role::Email},
    {"GEO", 79394},
    {"LOCATION", 79373},
    {"URL", 79410, Text, Role::Url},
    {"UID", 79409},
    {"KEY", 79395, Key},
    {"NOTE", 79400},
    {"LOGO", 79396, Media},
    {"SOUND", 79405, Media},
    {"PHOTO", 79402, Media},
    {"MS-CARDPICTURE", 79402, Media},
};

constexpr KnownProperty kCalendar[] = {
    {"LOCATION", 79373, Text, Role::Location},  // before the row for both formats
    {"SUMMARY", 79609, Text, Role::Summary},
    {"CATEGORIES", 85562, Lines},
    {"CLASS", 85562},
    {"DCREATED", 79364},
    {"COMPLETED", 79365},
    {"DESCRIPTION", 79366},
    {"DALARM", 79367, Rows, Role::None, kOtherAlarm},
    {"DUE", 79368},
    {"DTEND", 79369},
    {"EXDATE", 79370},
    {"EXRULE", 79371},
    {"LAST-MODIFIED", 79372},
    {"M-ALARM", 79374},
    {"RNUM", 79375},
    {"PRIORITY", 79543},
    {"PALARM", 79376, Rows, Role::None, kOtherAlarm},
    {"RELATED-TO", 79377},
    {"RDATE", 79378, Lines},
    {"RRULE", 79379},
    {"RESOURCES", 79380, Lines},
    {"SEQUENCE", 79381},
    {"DTSTART", 79382, Text, Role::Start},
    {"STATUS", 85564, Text, Role::Status},
    {"TRANSP", 79383},
    {"ATTENDEE", 79360},
    {"AALARM", 79362, Rows, Role::None, kSoundAlarm},
    {"MALARM", 79374, Rows, Role::None, kMailAlarm},
    {"ATTACH", 79361, Attach},
};

constexpr std::string_view kWritten[] = {
    "dom",     "intl",       "postal",    "parcel",  "home", "work",   "pref",     "voice",
    "fax",     "msg",        "cell",      "pager",   "bbs",  "modem",  "car",      "isdn",
    "video",   "aol",        "applelink", "attmail", "cis",  "eworld", "internet", "ibmmail",
    "mcimail", "powershare", "prodigy",   "tlx",     "x400", "x509",   "pgp"};

// Kinds of pictures and sounds: known, and never written.
constexpr std::string_view kUnwritten[] = {"gif",   "cgm",  "wmf",  "bmp",  "met",  "pmb",   "dib",
                                           "pict",  "tiff", "pdf",  "ps",   "jpeg", "qtime", "mpeg",
                                           "mpeg2", "avi",  "wave", "aiff", "pcm"};

// The lengths of the types by their first letters, bit by bit. Most words are seen here to be none.
constexpr auto kTypeLengths = [] {
  std::array<uint32_t, 32> lengths = {};
  const auto add = [&](std::string_view type) { lengths[type[0] & 31] |= 1U << type.size(); };
  for (const std::string_view type : kWritten) add(type);
  for (const std::string_view type : kUnwritten) add(type);
  return lengths;
}();

template <class Test>
const KnownProperty *find(int16_t format, Test test) {
  if (format == VcardFormatVcalendar) {
    const auto *row = std::find_if(std::begin(kCalendar), std::end(kCalendar), test);
    if (row != std::end(kCalendar)) return row;
  }
  const auto *row = std::find_if(std::begin(kBoth), std::end(kBoth), test);
  return row != std::end(kBoth) ? row : nullptr;
}

}  // namespace

const KnownProperty *knownProperty(std::string_view name, int16_t format) {
  return find(format, [&](const KnownProperty &row) { return equalsNoCase(name, row.name); });
}

const KnownProperty *propertyOfLabel(uint32_t label, int16_t format) {
  return find(format, [&](const KnownProperty &row) { return row.label == label; });
}

int knownType(std::string_view name) {
  const bool canBe =
      !name.empty() && name.size() < 32 && (kTypeLengths[name[0] & 31] >> name.size() & 1) != 0;
  if (!canBe) return -1;
  const auto same = [&](std::string_view type) { return equalsNoCase(name, type); };
  const auto *written = std::find_if(std::begin(kWritten), std::end(kWritten), same);
  if (written != std::end(kWritten)) return static_cast<int>(written - kWritten);
  const auto *other = std::find_if(std::begin(kUnwritten), std::end(kUnwritten), same);
  if (other == std::end(kUnwritten)) return -1;
  return static_cast<int>(std::size(kWritten)) + static_cast<int>(other - kUnwritten);
}

std::string_view typeOfLabel(uint32_t label) {
  const uint32_t number = label - FirstTypeLabel;
  return number < std::size(kWritten) ? kWritten[number] : std::string_view();
}

}  // namespace px

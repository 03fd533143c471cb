#include "host/labels/property_labels.h"

#include <algorithm>
#include <iterator>

#include "host/labels/label_texts.h"

namespace px {
namespace {

struct Label {
  std::string_view name;
  std::string_view text;
};

// Names that the filter has no string id for.
constexpr Label kProperties[] = {
    {"ACKNOWLEDGED", "Acknowledged"},
    {"ACTION", "Action"},
    {"ANNIVERSARY", "Anniversary"},
    {"BIRTHPLACE", "Place of birth"},
    {"CALADRURI", "Scheduling address"},
    {"CALSCALE", "Calendar scale"},
    {"CALURI", "Calendar"},
    {"CATEGORIES", "Categories"},
    {"CLASS", "Classification"},
    {"CLIENTPIDMAP", "Source IDs"},
    {"COLOR", "Colour"},
    {"COMMENT", "Comment"},
    {"CONFERENCE", "Conference"},
    {"CONTACT", "Contact"},
    {"CREATED", "Created"},
    {"DEATHDATE", "Date of death"},
    {"DEATHPLACE", "Place of death"},
    {"DTSTAMP", "Time stamp"},
    {"DURATION", "Duration"},
    {"EXPERTISE", "Expertise"},
    {"FBURL", "Free and busy times"},
    {"FREEBUSY", "Free and busy"},
    {"GENDER", "Gender"},
    {"HOBBY", "Hobby"},
    {"IMAGE", "Image"},
    {"IMPP", "Messaging"},
    {"INTEREST", "Interest"},
    {"KIND", "Kind"},
    {"LANG", "Language"},
    {"MEMBER", "Member"},
    {"METHOD", "Method"},
    {"NAME", "Source name"},
    {"NICKNAME", "Nickname"},
    {"ORG-DIRECTORY", "Directory"},
    {"ORGANIZER", "Organizer"},
    {"PERCENT-COMPLETE", "Per cent complete"},
    {"PRODID", "Product"},
    {"PROFILE", "Profile"},
    {"RECURRENCE-ID", "Recurrence"},
    {"REFRESH-INTERVAL", "Refresh interval"},
    {"RELATED", "Related"},
    {"REPEAT", "Repeat count"},
    {"REQUEST-STATUS", "Request status"},
    {"SORT-STRING", "Sorted as"},
    {"SOURCE", "Source"},
    {"TRIGGER", "Trigger"},
    {"TZID", "Time zone"},
    {"TZNAME", "Time zone name"},
    {"TZOFFSETFROM", "Offset before"},
    {"TZOFFSETTO", "Offset"},
    {"TZURL", "Time zone source"},
    {"X-ABADR", "Address format"},
    {"X-ABDATE", "Date"},
    {"X-ABLABEL", "Label"},
    {"X-ABRELATEDNAMES", "Related"},
    {"X-ABSHOWAS", "Shown as"},
    {"X-AIM", "AIM"},
    {"X-ALT-DESC", "Description"},
    {"X-ANNIVERSARY", "Anniversary"},
    {"X-ASSISTANT", "Assistant"},
    {"X-EVOLUTION-ANNIVERSARY", "Anniversary"},
    {"X-EVOLUTION-ASSISTANT", "Assistant"},
    {"X-EVOLUTION-BLOG-URL", "Blog"},
    {"X-EVOLUTION-FILE-AS", "Filed as"},
    {"X-EVOLUTION-MANAGER", "Manager"},
    {"X-EVOLUTION-SPOUSE", "Spouse"},
    {"X-EVOLUTION-VIDEO-URL", "Video chat"},
    {"X-FACEBOOK", "Facebook"},
    {"X-GADUGADU", "Gadu-Gadu"},
    {"X-GENDER", "Gender"},
    {"X-GOOGLE-TALK", "Google Talk"},
    {"X-GROUPWISE", "GroupWise"},
    {"X-GTALK", "Google Talk"},
    {"X-ICQ", "ICQ"},
    {"X-JABBER", "Jabber"},
    {"X-KADDRESSBOOK-BLOGFEED", "Blog"},
    {"X-KADDRESSBOOK-X-ANNIVERSARY", "Anniversary"},
    {"X-KADDRESSBOOK-X-ASSISTANTSNAME", "Assistant"},
    {"X-KADDRESSBOOK-X-DEPARTMENT", "Department"},
    {"X-KADDRESSBOOK-X-IMADDRESS", "Messaging"},
    {"X-KADDRESSBOOK-X-MANAGERSNAME", "Manager"},
    {"X-KADDRESSBOOK-X-OFFICE", "Office"},
    {"X-KADDRESSBOOK-X-PROFESSION", "Profession"},
    {"X-KADDRESSBOOK-X-SPOUSESNAME", "Spouse"},
    {"X-LINKEDIN", "LinkedIn"},
    {"X-MAIDENNAME", "Maiden name"},
    {"X-MANAGER", "Manager"},
    {"X-MATRIX", "Matrix"},
    {"X-MSN", "MSN"},
    {"X-PHONETIC-FIRST-NAME", "Given name, sound"},
    {"X-PHONETIC-LAST-NAME", "Family name, sound"},
    {"X-PUBLISHED-TTL", "Refresh interval"},
    {"X-QQ", "QQ"},
    {"X-SIP", "SIP"},
    {"X-SKYPE", "Skype"},
    {"X-SKYPE-USERNAME", "Skype"},
    {"X-SOCIALPROFILE", "Social profile"},
    {"X-SPOUSE", "Spouse"},
    {"X-TWITTER", "Twitter"},
    {"X-WR-CALDESC", "Calendar description"},
    {"X-WR-CALNAME", "Calendar"},
    {"X-WR-TIMEZONE", "Time zone"},
    {"X-YAHOO", "Yahoo"},
    {"XML", "XML"},
};

constexpr Label kParameters[] = {
    {"CN", "Name"},
    {"CUTYPE", "Kind"},
    {"DELEGATED-FROM", "Delegated from"},
    {"DELEGATED-TO", "Delegated to"},
    {"EXPECT", "Expected"},
    {"LABEL", "Address label"},
    {"PARTSTAT", "Status"},
    {"ROLE", "Role"},
    {"RSVP", "Reply requested"},
    {"SENT-BY", "Sent by"},
    {"STATUS", "Status"},
};

// In the order of their labels' string ids.
constexpr std::string_view kTypes[] = {
    "dom",     "intl",       "postal",    "parcel",  "home", "work",   "pref",     "voice",
    "fax",     "msg",        "cell",      "pager",   "bbs",  "modem",  "car",      "isdn",
    "video",   "aol",        "applelink", "attmail", "cis",  "eworld", "internet", "ibmmail",
    "mcimail", "powershare", "prodigy",   "tlx",     "x400", "x509",   "pgp",
};
constexpr uint32_t kFirstTypeId = 79424;
static_assert(kFirstTypeId + std::size(kTypes) - 1 == 79454);

// Its id stands for CATEGORIES and CLASS alike: the name tells more.
constexpr uint32_t kClassificationId = 85562;

constexpr bool sorted(const Label *first, const Label *last) {
  return std::adjacent_find(
             first, last, [](const Label &a, const Label &b) { return a.name >= b.name; }) == last;
}
static_assert(sorted(std::begin(kProperties), std::end(kProperties)));
static_assert(sorted(std::begin(kParameters), std::end(kParameters)));

template <size_t N>
std::string_view find(const Label (&labels)[N], std::string_view name) {
  const Label *found =
      std::lower_bound(std::begin(labels), std::end(labels), name,
                       [](const Label &label, std::string_view key) { return label.name < key; });
  return found != std::end(labels) && found->name == name ? found->text : std::string_view();
}

}  // namespace

std::string_view propertyLabel(uint32_t label, std::string_view name) {
  const std::string_view known =
      label == 0 || (label == kClassificationId && !name.empty()) ? "" : labelText(label);
  return known.empty() ? find(kProperties, name) : known;
}

std::string_view typeLabel(std::string_view type) {
  const auto *found = std::find(std::begin(kTypes), std::end(kTypes), type);
  if (found == std::end(kTypes)) return type;
  return labelText(kFirstTypeId + static_cast<uint32_t>(found - std::begin(kTypes)));
}

std::string_view parameterLabel(std::string_view name) { return find(kParameters, name); }

}  // namespace px

#include "host/labels/property_labels.h"

#include <algorithm>
#include <iterator>

#include "host/labels/label_texts.h"
#include "host/languages/translation.h"

namespace px {
namespace {

struct Label {
  std::string_view name;
  std::string_view text;
};

// Names that the filter has no string id for.
constexpr Label kProperties[] = {
    {"ACKNOWLEDGED", N_("Acknowledged")},
    {"ACTION", N_("Action")},
    {"ANNIVERSARY", N_("Anniversary")},
    {"BIRTHPLACE", N_("Place of birth")},
    {"CALADRURI", N_("Scheduling address")},
    {"CALSCALE", N_("Calendar scale")},
    {"CALURI", N_("Calendar")},
    {"CATEGORIES", N_("Categories")},
    {"CLASS", N_("Classification")},
    {"CLIENTPIDMAP", N_("Source IDs")},
    {"COLOR", N_("Colour")},
    {"COMMENT", N_("Comment")},
    {"CONFERENCE", N_("Conference")},
    {"CONTACT", N_("Contact")},
    {"CREATED", N_("Created")},
    {"DEATHDATE", N_("Date of death")},
    {"DEATHPLACE", N_("Place of death")},
    {"DTSTAMP", N_("Time stamp")},
    {"DURATION", N_("Duration")},
    {"EXPERTISE", N_("Expertise")},
    {"FBURL", N_("Free and busy times")},
    {"FREEBUSY", N_("Free and busy")},
    {"GENDER", N_("Gender")},
    {"HOBBY", N_("Hobby")},
    {"IMAGE", N_("Image")},
    {"IMPP", N_("Messaging")},
    {"INTEREST", N_("Interest")},
    {"KIND", N_("Kind")},
    {"LANG", N_("Language")},
    {"MEMBER", N_("Member")},
    {"METHOD", N_("Method")},
    {"NAME", N_("Source name")},
    {"NICKNAME", N_("Nickname")},
    {"ORG-DIRECTORY", N_("Directory")},
    {"ORGANIZER", N_("Organizer")},
    {"PERCENT-COMPLETE", N_("Per cent complete")},
    {"PRODID", N_("Product")},
    {"PROFILE", N_("Profile")},
    {"RECURRENCE-ID", N_("Recurrence")},
    {"REFRESH-INTERVAL", N_("Refresh interval")},
    {"RELATED", N_("Related")},
    {"REPEAT", N_("Repeat count")},
    {"REQUEST-STATUS", N_("Request status")},
    {"SORT-STRING", N_("Sorted as")},
    {"SOURCE", N_("Source")},
    {"TRIGGER", N_("Trigger")},
    {"TZID", N_("Time zone")},
    {"TZNAME", N_("Time zone name")},
    {"TZOFFSETFROM", N_("Offset before")},
    {"TZOFFSETTO", N_("Offset")},
    {"TZURL", N_("Time zone source")},
    {"X-ABADR", N_("Address format")},
    {"X-ABDATE", N_("Date")},
    {"X-ABLABEL", N_("Label")},
    {"X-ABRELATEDNAMES", N_("Related")},
    {"X-ABSHOWAS", N_("Shown as")},
    {"X-AIM", "AIM"},
    {"X-ALT-DESC", N_("Description")},
    {"X-ANNIVERSARY", N_("Anniversary")},
    {"X-ASSISTANT", N_("Assistant")},
    {"X-EVOLUTION-ANNIVERSARY", N_("Anniversary")},
    {"X-EVOLUTION-ASSISTANT", N_("Assistant")},
    {"X-EVOLUTION-BLOG-URL", N_("Blog")},
    {"X-EVOLUTION-FILE-AS", N_("Filed as")},
    {"X-EVOLUTION-MANAGER", N_("Manager")},
    {"X-EVOLUTION-SPOUSE", N_("Spouse")},
    {"X-EVOLUTION-VIDEO-URL", N_("Video chat")},
    {"X-FACEBOOK", "Facebook"},
    {"X-GADUGADU", "Gadu-Gadu"},
    {"X-GENDER", N_("Gender")},
    {"X-GOOGLE-TALK", "Google Talk"},
    {"X-GROUPWISE", "GroupWise"},
    {"X-GTALK", "Google Talk"},
    {"X-ICQ", "ICQ"},
    {"X-JABBER", "Jabber"},
    {"X-KADDRESSBOOK-BLOGFEED", N_("Blog")},
    {"X-KADDRESSBOOK-X-ANNIVERSARY", N_("Anniversary")},
    {"X-KADDRESSBOOK-X-ASSISTANTSNAME", N_("Assistant")},
    {"X-KADDRESSBOOK-X-DEPARTMENT", N_("Department")},
    {"X-KADDRESSBOOK-X-IMADDRESS", N_("Messaging")},
    {"X-KADDRESSBOOK-X-MANAGERSNAME", N_("Manager")},
    {"X-KADDRESSBOOK-X-OFFICE", N_("Office")},
    {"X-KADDRESSBOOK-X-PROFESSION", N_("Profession")},
    {"X-KADDRESSBOOK-X-SPOUSESNAME", N_("Spouse")},
    {"X-LINKEDIN", "LinkedIn"},
    {"X-MAIDENNAME", N_("Maiden name")},
    {"X-MANAGER", N_("Manager")},
    {"X-MATRIX", "Matrix"},
    {"X-MSN", "MSN"},
    {"X-PHONETIC-FIRST-NAME", N_("Given name, sound")},
    {"X-PHONETIC-LAST-NAME", N_("Family name, sound")},
    {"X-PUBLISHED-TTL", N_("Refresh interval")},
    {"X-QQ", "QQ"},
    {"X-SIP", "SIP"},
    {"X-SKYPE", "Skype"},
    {"X-SKYPE-USERNAME", "Skype"},
    {"X-SOCIALPROFILE", N_("Social profile")},
    {"X-SPOUSE", N_("Spouse")},
    {"X-TWITTER", "Twitter"},
    {"X-WR-CALDESC", N_("Calendar description")},
    {"X-WR-CALNAME", N_("Calendar")},
    {"X-WR-TIMEZONE", N_("Time zone")},
    {"X-YAHOO", "Yahoo"},
    {"XML", "XML"},
};

constexpr Label kParameters[] = {
    {"CN", N_("Name")},
    {"CUTYPE", N_("Kind")},
    {"DELEGATED-FROM", N_("Delegated from")},
    {"DELEGATED-TO", N_("Delegated to")},
    {"EXPECT", N_("Expected")},
    {"LABEL", N_("Address label")},
    {"PARTSTAT", N_("Status")},
    {"ROLE", N_("Role")},
    {"RSVP", N_("Reply requested")},
    {"SENT-BY", N_("Sent by")},
    {"STATUS", N_("Status")},
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

std::string_view typeInWords(std::string_view type) {
  const std::string_view label = typeLabel(type);
  return label.data() == type.data() ? type : tr(label);
}

std::string_view parameterLabel(std::string_view name) { return find(kParameters, name); }

}  // namespace px

#include "host/labels/label_texts.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace px {
namespace {

struct Label {
  uint32_t id;
  std::string_view text;
};

// In the order of the ids, which groups them: alarm fields, calendar properties, card properties,
// name and address fields, types.
constexpr Label kLabels[] = {
    {79355, "Run time"},
    {79356, "Snooze time"},
    {79357, "Repeat count"},
    {79358, "Sound"},
    {79359, "Text"},  // what a display alarm shows, a procedure alarm runs, a mail alarm says
    {79360, "Attendee"},
    {79361, "Attachment"},
    {79362, "Sound alarm"},
    {79364, "Created"},
    {79365, "Completed"},
    {79366, "Description"},
    {79367, "Display alarm"},
    {79368, "Due"},
    {79369, "End"},
    {79370, "Exception dates"},
    {79371, "Exception rule"},
    {79372, "Last modified"},
    {79373, "Location"},
    {79374, "Mail alarm"},  // M-ALARM and MALARM
    {79375, "Recurrences"},
    {79376, "Procedure alarm"},
    {79377, "Related to"},
    {79378, "Recurrence dates"},
    {79379, "Recurrence rule"},
    {79380, "Resources"},
    {79381, "Sequence number"},
    {79382, "Start"},
    {79383, "Transparency"},
    {79384, "Expected"},
    {79385, "Reply requested"},
    {79386, "URL"},         // of a picture or a sound that isn't in the card
    {79387, "Content ID"},  // likewise
    {79388, "Address"},
    {79391, "Birthday"},
    {79392, "E-mail"},
    {79393, "Name"},
    {79394, "Geographic position"},
    {79395, "Key"},
    {79396, "Logo"},
    {79397, "Address label"},
    {79398, "Mail program"},
    {79399, "Name parts"},
    {79400, "Note"},
    {79401, "Organisation"},
    {79402, "Photo"},
    {79403, "Revised"},
    {79404, "Role"},  // ROLE, and the role of an attendee
    {79405, "Sound"},
    {79406, "Telephone"},
    {79407, "Title"},
    {79408, "Time zone"},
    {79409, "Unique ID"},
    {79410, "URL"},
    {79411, "Version"},
    {79412, "Family name"},
    {79413, "Given name"},
    {79414, "Additional names"},
    {79415, "Prefix"},
    {79416, "Suffix"},
    {79417, "Post office box"},
    {79418, "Extended address"},
    {79419, "Street"},
    {79420, "City"},
    {79421, "Region"},
    {79422, "Postal code"},
    {79423, "Country"},
    {79424, "domestic"},
    {79425, "international"},
    {79426, "postal"},
    {79427, "parcel"},
    {79428, "home"},
    {79429, "work"},
    {79430, "preferred"},
    {79431, "voice"},
    {79432, "fax"},
    {79433, "messages"},
    {79434, "cell"},
    {79435, "pager"},
    {79436, "BBS"},
    {79437, "modem"},
    {79438, "car"},
    {79439, "ISDN"},
    {79440, "video"},
    {79441, "AOL"},
    {79442, "AppleLink"},
    {79443, "AT&T Mail"},
    {79444, "CompuServe"},
    {79445, "eWorld"},
    {79446, "Internet"},
    {79447, "IBM Mail"},
    {79448, "MCI Mail"},
    {79449, "PowerShare"},
    {79450, "Prodigy"},
    {79451, "telex"},
    {79452, "X.400"},
    {79453, "X.509"},
    {79454, "PGP"},
    {79493, "Untitled"},  // an attachment without a file name
    {79543, "Priority"},
    {79609, "Summary"},
    {79745, "Mail address"},
    {85562, "Classification"},  // CATEGORIES and CLASS
    {85564, "Status"},          // STATUS, and the status of an attendee
};

constexpr bool precedes(const Label &label, uint32_t id) { return label.id < id; }

static_assert(std::adjacent_find(std::begin(kLabels), std::end(kLabels),
                                 [](const Label &a, const Label &b) { return a.id >= b.id; }) ==
              std::end(kLabels));

// Most ids follow one another; those texts are found by their number.
constexpr uint32_t kFirstId = std::begin(kLabels)->id;
constexpr auto kFirstTexts = [] {
  std::array<std::string_view, 100> texts;
  for (const Label &label : kLabels) {
    if (label.id - kFirstId < texts.size()) texts[label.id - kFirstId] = label.text;
  }
  return texts;
}();

}  // namespace

std::string_view labelText(uint32_t id) {
  if (id - kFirstId < kFirstTexts.size()) return kFirstTexts[id - kFirstId];
  const Label *found = std::lower_bound(std::begin(kLabels), std::end(kLabels), id, precedes);
  return found != std::end(kLabels) && found->id == id ? found->text : std::string_view();
}

}  // namespace px

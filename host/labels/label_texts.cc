#include "host/labels/label_texts.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "host/languages/translation.h"

namespace px {
namespace {

struct Label {
  uint32_t id;
  std::string_view text;
};

// In the order of the ids, which groups them: alarm fields, calendar properties, card properties,
// name and address fields, types.
constexpr Label kLabels[] = {
    {79355, N_("Run time")},
    {79356, N_("Snooze time")},
    {79357, N_("Repeat count")},
    {79358, N_("Sound")},
    {79359, N_("Text")},  // what a display alarm shows, a procedure alarm runs, a mail alarm says
    {79360, N_("Attendee")},
    {79361, N_("Attachment")},
    {79362, N_("Sound alarm")},
    {79364, N_("Created")},
    {79365, N_("Completed")},
    {79366, N_("Description")},
    {79367, N_("Display alarm")},
    {79368, N_("Due")},
    {79369, N_("End")},
    {79370, N_("Exception dates")},
    {79371, N_("Exception rule")},
    {79372, N_("Last modified")},
    {79373, N_("Location")},
    {79374, N_("Mail alarm")},  // M-ALARM and MALARM
    {79375, N_("Recurrences")},
    {79376, N_("Procedure alarm")},
    {79377, N_("Related to")},
    {79378, N_("Recurrence dates")},
    {79379, N_("Recurrence rule")},
    {79380, N_("Resources")},
    {79381, N_("Sequence number")},
    {79382, N_("Start")},
    {79383, N_("Transparency")},
    {79384, N_("Expected")},
    {79385, N_("Reply requested")},
    {79386, "URL"},             // of a picture or a sound that isn't in the card
    {79387, N_("Content ID")},  // likewise
    {79388, N_("Address")},
    {79391, N_("Birthday")},
    {79392, N_("E-mail")},
    {79393, N_("Name")},
    {79394, N_("Geographic position")},
    {79395, N_("Key")},
    {79396, N_("Logo")},
    {79397, N_("Address label")},
    {79398, N_("Mail program")},
    {79399, N_("Name parts")},
    {79400, N_("Note")},
    {79401, N_("Organisation")},
    {79402, N_("Photo")},
    {79403, N_("Revised")},
    {79404, N_("Role")},  // ROLE, and the role of an attendee
    {79405, N_("Sound")},
    {79406, N_("Telephone")},
    {79407, N_("Title")},
    {79408, N_("Time zone")},
    {79409, N_("Unique ID")},
    {79410, "URL"},
    {79411, N_("Version")},
    {79412, N_("Family name")},
    {79413, N_("Given name")},
    {79414, N_("Additional names")},
    {79415, N_("Prefix")},
    {79416, N_("Suffix")},
    {79417, N_("Post office box")},
    {79418, N_("Extended address")},
    {79419, N_("Street")},
    {79420, N_("City")},
    {79421, N_("Region")},
    {79422, N_("Postal code")},
    {79423, N_("Country")},
    {79424, N_("domestic")},
    {79425, N_("international")},
    {79426, N_("postal")},
    {79427, N_("parcel")},
    {79428, N_("home")},
    {79429, N_("work")},
    {79430, N_("preferred")},
    {79431, N_("voice")},
    {79432, N_("fax")},
    {79433, N_("messages")},
    {79434, N_("cell")},
    {79435, N_("pager")},
    {79436, "BBS"},
    {79437, N_("modem")},
    {79438, N_("car")},
    {79439, "ISDN"},
    {79440, N_("video")},
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
    {79451, N_("telex")},
    {79452, "X.400"},
    {79453, "X.509"},
    {79454, "PGP"},
    {79493, N_("Untitled")},  // an attachment without a file name
    {79543, N_("Priority")},
    {79609, N_("Summary")},
    {79745, N_("Mail address")},
    {85562, N_("Classification")},  // CATEGORIES and CLASS
    {85564, N_("Status")},          // STATUS, and the status of an attendee
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

// The property names, and the search for one.

#ifndef PX_VCRD_PARSER_PROPERTY_NAMES_H
#define PX_VCRD_PARSER_PROPERTY_NAMES_H

#include <array>
#include <cstdint>

#include "vcrd/parser/name_table.h"

// The rows of the name table, then one name that stands outside it. The row "x-" is no property: an
// extension is a name like any other unknown one.
enum VcardProperty : uint8_t {
  PropBegin,
  PropEnd,
  PropAdr,
  PropOrg,
  PropN,
  PropAgent,
  PropLogo,
  PropPhoto,
  PropLabel,
  PropFn,
  PropTitle,
  PropSound,
  PropVersion,
  PropTel,
  PropEmail,
  PropTz,
  PropGeo,
  PropLocation,
  PropNote,
  PropUrl,
  PropBday,
  PropRole,
  PropRev,
  PropUid,
  PropKey,
  PropMailer,
  PropX,
  PropSummary,
  PropCategories,
  PropClass,
  PropDcreated,
  PropCompleted,
  PropDescription,
  PropDalarm,
  PropDue,
  PropDtend,
  PropExdate,
  PropExrule,
  PropLastModified,
  PropMAlarm,
  PropRnum,
  PropPriority,
  PropPalarm,
  PropRelatedTo,
  PropRdate,
  PropRrule,
  PropResources,
  PropSequence,
  PropDtstart,
  PropStatus,
  PropTransp,
  PropAttendee,
  PropAalarm,
  PropMalarm,
  PropAttach,
  PropMsCardPicture,
  PropOther  // any other name
};

inline constexpr std::array<VcardName, 55> kPropertyNames = {{
    {"begin"},    {"end"},       {"adr"},         {"org"},           {"n"},
    {"agent"},    {"logo"},      {"photo"},       {"label"},         {"fn"},
    {"title"},    {"sound"},     {"version"},     {"tel"},           {"email"},
    {"tz"},       {"geo"},       {"location"},    {"note"},          {"url"},
    {"bday"},     {"role"},      {"rev"},         {"uid"},           {"key"},
    {"mailer"},   {"x-"},        {"summary"},     {"categories"},    {"class"},
    {"dcreated"}, {"completed"}, {"description"}, {"dalarm"},        {"due"},
    {"dtend"},    {"exdate"},    {"exrule"},      {"last-modified"}, {"m-alarm"},
    {"rnum"},     {"priority"},  {"palarm"},      {"related-to"},    {"rdate"},
    {"rrule"},    {"resources"}, {"sequence"},    {"dtstart"},       {"status"},
    {"transp"},   {"attendee"},  {"aalarm"},      {"malarm"},        {"attach"},
}};
static_assert(kPropertyNames.size() == PropMsCardPicture);

// Answers the property of a name in any case of letters, whole. `name` is a field that
// VcardSetPropName has filled, or one that was emptied.
VcardProperty VcardFindProperty(const VcardText &name);

#endif

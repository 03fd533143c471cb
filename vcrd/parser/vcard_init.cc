#include "vcrd/parser/vcard_init.h"

#include "vcrd/parser/base64_values.h"

namespace {

constexpr VcardAction kGroup = TavoVcardAddGroup;
constexpr VcardAction kName = TavoVcardSetPropName;
constexpr VcardAction kParm = TavoVcardSetParmValue;
constexpr VcardAction kParmId = TavoVcardSetParmId;
constexpr VcardAction kIdParm = TavoVcardSetIdParmValue;
constexpr VcardAction kProp = TavoVcardDisplayProp;
constexpr VcardAction kError = TavoVcardError;

}  // namespace

extern constinit const VcardInitTables VcardInit = {
    .VcardNextState = {{
        // StateName, StateParm, StateParmValue, StateValue
        0, 1, 0, 0,  // TokenPeriod
        1, 1, 1, 0,  // TokenSemicolon
        0, 2, 0, 0,  // TokenEquals
        3, 3, 3, 0,  // TokenColon
        0, 0, 0, 0,  // TokenEnd
        0, 0, 0, 0,  // TokenEof
    }},
    .VcardActions = {{
        kGroup, kError,  kError,  kError,  // TokenPeriod
        kName,  kParm,   kIdParm, kError,  // TokenSemicolon
        kError, kParmId, kError,  kError,  // TokenEquals
        kName,  kParm,   kIdParm, kError,  // TokenColon
        kError, kError,  kError,  kProp,   // TokenEnd
        kError, kError,  kError,  kProp,   // TokenEof
    }},
    .PropertyNames = kPropertyNames,
    .ParameterNames = {{{"type"},
                        {"value"},
                        {"encoding"},
                        {"charset"},
                        {"language"},
                        {"x-"},
                        {"role"},
                        {"status"},
                        {"rsvp"},
                        {"expect"}}},
    .TypeNames = {{
        {"dom"},    {"intl"},     {"postal"},  {"parcel"},  {"home"},       {"work"},    {"pref"},
        {"voice"},  {"fax"},      {"msg"},     {"cell"},    {"pager"},      {"bbs"},     {"modem"},
        {"car"},    {"isdn"},     {"video"},   {"aol"},     {"applelink"},  {"attmail"}, {"cis"},
        {"eworld"}, {"internet"}, {"ibmmail"}, {"mcimail"}, {"powershare"}, {"prodigy"}, {"tlx"},
        {"x400"},   {"gif"},      {"cgm"},     {"wmf"},     {"bmp"},        {"met"},     {"pmb"},
        {"dib"},    {"pict"},     {"tiff"},    {"pdf"},     {"ps"},         {"jpeg"},    {"qtime"},
        {"mpeg"},   {"mpeg2"},    {"avi"},     {"wave"},    {"aiff"},       {"pcm"},     {"x509"},
        {"pgp"},    {"x-"},
    }},
    // dom to x400 in the order of the type names, then x509 and pgp; media formats have no label.
    .TypeLabelIds = {{79424, 79425, 79426, 79427, 79428, 79429, 79430, 79431, 79432, 79433, 79434,
                      79435, 79436, 79437, 79438, 79439, 79440, 79441, 79442, 79443, 79444, 79445,
                      79446, 79447, 79448, 79449, 79450, 79451, 79452, 79453, 79454}},
    .ValueKindNames = {{{"inline"}, {"url"}, {"content-id"}, {"cid"}, {"x-"}, {"binary"}}},
    .EncodingNames = {{{"7bit"}, {"8bit"}, {"quoted-printable"}, {"base64"}, {"x-"}, {"utf-8"}}},
    .NameFieldIds = {{79412, 79413, 79414, 79415, 79416}},
    .AdrFieldIds = {{79417, 79418, 79419, 79420, 79421, 79422, 79423}},
    .AttendeeParmIds = {{79404, 85564, 79385, 79384}},
    .AalarmFieldIds = {{79355, 79356, 79357, 79358}},
    .MalarmFieldIds = {{79355, 79356, 79357, 79745, 79359}},
    .DalarmFieldIds = {{79355, 79356, 79357, 79359}},
    .Base64Values = kBase64Values,
};

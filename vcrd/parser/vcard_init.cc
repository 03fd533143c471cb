#include "vcrd/parser/vcard_init.h"

#include "vcrd/parser/base64_values.h"
#include "vcrd/parser/parameter_names.h"
#include "vcrd/parser/property_names.h"

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
    .ParameterNames = kParameterNames,
    .TypeNames = kTypeNames,
    // dom to x400 in the order of the type names, then x509 and pgp; media formats have no label.
    .TypeLabelIds = {{79424, 79425, 79426, 79427, 79428, 79429, 79430, 79431, 79432, 79433, 79434,
                      79435, 79436, 79437, 79438, 79439, 79440, 79441, 79442, 79443, 79444, 79445,
                      79446, 79447, 79448, 79449, 79450, 79451, 79452, 79453, 79454}},
    .ValueKindNames = kValueKindNames,
    .EncodingNames = kEncodingNames,
    .NameFieldIds = {{79412, 79413, 79414, 79415, 79416}},
    .AdrFieldIds = {{79417, 79418, 79419, 79420, 79421, 79422, 79423}},
    .AttendeeParmIds = {{79404, 85564, 79385, 79384}},
    .AalarmFieldIds = {{79355, 79356, 79357, 79358}},
    .MalarmFieldIds = {{79355, 79356, 79357, 79745, 79359}},
    .DalarmFieldIds = {{79355, 79356, 79357, 79359}},
    .Base64Values = kBase64Values,
};

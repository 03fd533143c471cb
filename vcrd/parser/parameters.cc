#include "vcrd/parser/parameters.h"

#include <iterator>

#include "vcrd/parser/parameter_names.h"

namespace {

constexpr auto kParameterIndex = VcardMakeNameIndex(kParameterNames);
constexpr auto kTypeIndex = VcardMakeNameIndex(kTypeNames);
constexpr auto kValueKindIndex = VcardMakeNameIndex(kValueKindNames);
constexpr auto kEncodingIndex = VcardMakeNameIndex(kEncodingNames);

// What a row stands for. Extensions have a row and no number of their own here.
constexpr VcardParmId kParmOfName[] = {ParmType, ParmValue, ParmEncoding, ParmCharset, ParmLanguage,
                                       ParmNone, ParmRole,  ParmStatus,   ParmRsvp,    ParmExpect};
constexpr VcardValueKind kKindOfName[] = {ValueInline,    ValueUrl,       ValueContentId,
                                          ValueContentId, ValueExtension, ValueBinary};
constexpr VcardEncoding kEncodingOfName[] = {
    Encoding7bit,   Encoding8bit,      EncodingQuotedPrintable,
    EncodingBase64, EncodingExtension, EncodingUtf8};
static_assert(std::size(kParmOfName) == kParameterNames.size());
static_assert(std::size(kKindOfName) == kValueKindNames.size());
static_assert(std::size(kEncodingOfName) == kEncodingNames.size());

bool IsExtension(const char *text) { return (text[0] == 'X' || text[0] == 'x') && text[1] == '-'; }

// The generic form of a property writes its parameters from here to the colon.
void NoteParmPos(VcardData *data) {
  if (data->ParmPos == kNoPosition) data->ParmPos = data->TokenPos;
}

}  // namespace

int32_t VcardMatchType(const VcardFoldedName &text, VcardData *data) {
  const int32_t row = kTypeIndex.Find(text);
  if (row < 0) return -1;
  data->Types.Flag[row] = 1;
  data->Types.Flag[TypeAny] = 1;
  return 0;
}

int32_t VcardMatchValue(const VcardFoldedName &text, int32_t *kind) {
  const int32_t row = kValueKindIndex.Find(text);
  if (row < 0) return -1;
  *kind = kKindOfName[row];
  return 0;
}

int32_t VcardMatchEncoding(const VcardFoldedName &text, int32_t *encoding) {
  const int32_t row = kEncodingIndex.Find(text);
  if (row < 0) return -1;
  *encoding = kEncodingOfName[row];
  return 0;
}

int64_t TavoVcardSetParmId(const char *text, VcardData *data) {
  NoteParmPos(data);
  data->ParmId = ParmNone;
  const int32_t row = kParameterIndex.Find(text);
  if (row >= 0) {
    data->ParmId = kParmOfName[row];
  } else if (IsExtension(text)) {
    data->ParmId = ParmExtension;
    VcardCopyText(data->ExtParmName, text);
  }
  return 0;
}

// A bare parameter tries its luck as a value kind, an encoding and a type. A bare extension name
// is none of these.
int64_t TavoVcardSetParmValue(const char *text, VcardData *data) {
  NoteParmPos(data);
  const VcardFoldedName name(text);
  if (VcardMatchValue(name, &data->ValueKind) == 0) return 0;
  if (VcardMatchEncoding(name, &data->Encoding) == 0) return 0;
  VcardMatchType(name, data);
  return 0;
}

int64_t TavoVcardSetIdParmValue(const char *text, VcardData *data) {
  switch (data->ParmId) {
    case ParmType:
      data->TypeExt[0] = '\0';
      if (VcardMatchType(text, data) != 0 && IsExtension(text)) {
        data->Types.Flag[TypeExtension] = 1;
        data->Types.Flag[TypeAny] = 1;
        VcardCopyText(data->TypeExt, text);
      }
      break;
    case ParmValue:
      data->ValueExt[0] = '\0';
      if (VcardMatchValue(text, &data->ValueKind) != 0 && IsExtension(text)) {
        data->ValueKind = ValueExtension;
        VcardCopyText(data->ValueExt, text);
      }
      break;
    case ParmEncoding:
      data->EncodingExt[0] = '\0';
      if (VcardMatchEncoding(text, &data->Encoding) != 0 && IsExtension(text)) {
        data->Encoding = EncodingExtension;
        VcardCopyText(data->EncodingExt, text);
      }
      break;
    case ParmCharset:
      VcardCopyText(data->Charset, text);
      break;
    case ParmLanguage:
      VcardCopyText(data->Language, text);
      break;
    case ParmRole:
      VcardCopyText(data->Role, text);
      break;
    case ParmStatus:
      VcardCopyText(data->Status, text);
      break;
    case ParmRsvp:
      VcardCopyText(data->Rsvp, text);
      break;
    case ParmExpect:
      VcardCopyText(data->Expect, text);
      break;
    case ParmExtension:
      VcardCopyText(data->ExtParmValue, text);
      break;
    default:
      break;
  }
  return 0;
}

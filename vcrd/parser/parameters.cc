#include "vcrd/parser/parameters.h"

#include <algorithm>
#include <iterator>

#include "vcrd/parser/actions.h"
#include "vcrd/parser/parameter_names.h"

namespace {

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

constexpr auto kParameterIndex = VcardMakeNameIndex(kParameterNames);

// The words that a parameter's value can be: the rows of the types, then those of the value kinds
// and of the encodings. No word stands in two of the three, so one look-up tells what it is.
constexpr int32_t kFirstKind = static_cast<int32_t>(kTypeNames.size());
constexpr int32_t kFirstEncoding = kFirstKind + static_cast<int32_t>(kValueKindNames.size());

consteval auto AllWords() {
  std::array<VcardName, kTypeNames.size() + kValueKindNames.size() + kEncodingNames.size()> words{};
  auto to = std::copy(kTypeNames.begin(), kTypeNames.end(), words.begin());
  to = std::copy(kValueKindNames.begin(), kValueKindNames.end(), to);
  std::copy(kEncodingNames.begin(), kEncodingNames.end(), to);
  return words;
}
constexpr auto kWordIndex = VcardMakeNameIndex(AllWords());

// The row of a word, or -1.
int32_t FindWord(VcardTokenText text) { return kWordIndex.Find(VcardKeyOf(text)); }

// The generic form of a property writes its parameters from here to the colon.
void NoteParmPos(VcardData *data) {
  if (data->ParmPos == kNoPosition) data->ParmPos = data->TokenPos;
}

}  // namespace

int32_t VcardMatchType(int32_t word, VcardData *data) {
  if (word < 0 || word >= kFirstKind) return -1;
  data->Types.Flag[word] = 1;
  data->Types.Flag[TypeAny] = 1;
  return 0;
}

int32_t VcardMatchValue(int32_t word, int32_t *kind) {
  if (word < kFirstKind || word >= kFirstEncoding) return -1;
  *kind = kKindOfName[word - kFirstKind];
  return 0;
}

int32_t VcardMatchEncoding(int32_t word, int32_t *encoding) {
  if (word < kFirstEncoding) return -1;
  *encoding = kEncodingOfName[word - kFirstEncoding];
  return 0;
}

void VcardSetParmId(VcardTokenText text, VcardData *data) {
  NoteParmPos(data);
  data->HasNamedParameters = 1;
  data->ParmId = ParmNone;
  const int32_t row = kParameterIndex.Find(VcardKeyOf(text));
  if (row >= 0) {
    data->ParmId = kParmOfName[row];
  } else if (text.IsExtension()) {
    data->ParmId = ParmExtension;
    text.CopyTo(data->ExtParmName);
  }
}

// A bare parameter tries its luck as a type, a value kind and an encoding; no word is two of them.
// A bare extension name is none.
void VcardSetParmValue(VcardTokenText text, VcardData *data) {
  NoteParmPos(data);
  const int32_t word = FindWord(text);
  if (VcardMatchType(word, data) == 0) return;
  if (VcardMatchValue(word, &data->ValueKind) == 0) return;
  VcardMatchEncoding(word, &data->Encoding);
}

void VcardSetIdParmValue(VcardTokenText text, VcardData *data) {
  switch (data->ParmId) {
    case ParmType:
      data->TypeExt[0] = '\0';
      if (VcardMatchType(FindWord(text), data) != 0 && text.IsExtension()) {
        data->Types.Flag[TypeExtension] = 1;
        data->Types.Flag[TypeAny] = 1;
        text.CopyTo(data->TypeExt);
      }
      break;
    case ParmValue:
      data->ValueExt[0] = '\0';
      if (VcardMatchValue(FindWord(text), &data->ValueKind) != 0 && text.IsExtension()) {
        data->ValueKind = ValueExtension;
        text.CopyTo(data->ValueExt);
      }
      break;
    case ParmEncoding:
      data->EncodingExt[0] = '\0';
      if (VcardMatchEncoding(FindWord(text), &data->Encoding) != 0 && text.IsExtension()) {
        data->Encoding = EncodingExtension;
        text.CopyTo(data->EncodingExt);
      }
      break;
    case ParmCharset:
      text.CopyTo(data->Charset);
      break;
    case ParmLanguage:
      text.CopyTo(data->Language);
      break;
    case ParmRole:
      text.CopyTo(data->Role);
      break;
    case ParmStatus:
      text.CopyTo(data->Status);
      break;
    case ParmRsvp:
      text.CopyTo(data->Rsvp);
      break;
    case ParmExpect:
      text.CopyTo(data->Expect);
      break;
    case ParmExtension:
      text.CopyTo(data->ExtParmValue);
      break;
    default:
      break;
  }
}

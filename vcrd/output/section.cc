// VwStreamSection: announces a section, forgets what the last card's summary was made of, and
// defines the styles in the first section of a stream.

#include "vcrd/frame/host_routines.h"
#include "vcrd/frame/vcard_data.h"

static_assert(sizeof(VcardStyleDef) == 28 && sizeof(VcardTabStop) == 16);

namespace {

enum StyleKind : uint32_t { CharacterStyle = 0, ParagraphStyle = 1 };

// The attributes of a character style. The first style doesn't mention attribute 3.
enum : uint32_t { kOff = 0, kOn = 1, kNotSet = 2 };

struct CharacterStyleRow {
  uint32_t Attribute2, Attribute4, Attribute3;
  uint32_t Height;  // 0: not set
};
constexpr CharacterStyleRow kLabelRow = {kOn, kOn, kNotSet, 0};
constexpr CharacterStyleRow kPlainRow = {kOff, kOff, kOff, 0};
constexpr CharacterStyleRow kSubLabelRow = {kOff, kOff, kOn, 0};
constexpr CharacterStyleRow kHeadingRow[4] = {
    {kOn, kOff, kOff, 44}, {kOn, kOff, kOff, 32}, {kOn, kOff, kOff, 28}, {kOn, kOff, kOff, 24}};

struct ParagraphStyleRow {
  VcardTabStop Tab[2];
};
constexpr ParagraphStyleRow kListRow = {{{2, {0, 0}, 2160}, {1, {0, 0}, 2340}}};
constexpr ParagraphStyleRow kBodyRow = {{{1, {0, 0}, 360}, {1, {0, 0}, 360}}};

void ClearIndex(VcardData *data) {
  data->IndexDone = 0;
  data->PassCount = 0;
  VcardForgetPositions(data);
  data->LabelTypes = {};
  data->IntlAdrTypes = {};
  data->AdrTypes = {};
  for (int i = 0; i < kSlotCount; ++i) {
    data->TelTypes[i] = {};
    data->EmailTypes[i] = {};
  }
  // The other encodings stay: an index field is read only where its position is set, and most of
  // them are written together with it.
  data->BlockEncoding[BlockFn] = Encoding7bit;
  data->BlockEncoding[BlockTitle] = Encoding7bit;
}

// Gives out the next id and opens its definition. `record` is the same for all styles.
uint32_t BeginStyle(StyleKind kind, VcardStyleDef *record, VcardData *data) {
  record->StyleDefId = data->StyleCount++;
  record->StyleDefKind = kind;
  SoBeginDefinition(SoDefinitionStyle, record->StyleDefId, record, data);
  return record->StyleDefId;
}

uint32_t DefineStyle(const CharacterStyleRow &row, VcardStyleDef *record, VcardData *data) {
  const uint32_t id = BeginStyle(CharacterStyle, record, data);
  SoSetAttribute(8, 2, row.Attribute2, 0, data);
  SoSetAttribute(8, 4, row.Attribute4, 0, data);
  if (row.Attribute3 != kNotSet) SoSetAttribute(8, 3, row.Attribute3, 0, data);
  SoRoutine88(data);
  SoRoutine89(data);
  if (row.Height != 0) SoSetCharHeight(row.Height, data);
  SoEndDefinition(SoDefinitionStyle, id, data);
  return id;
}

uint32_t DefineStyle(const ParagraphStyleRow &row, VcardStyleDef *record, VcardData *data) {
  const uint32_t id = BeginStyle(ParagraphStyle, record, data);
  SoSetAttribute(21, 0, 0, 0, data);
  for (const VcardTabStop &tab : row.Tab) SoAddTabStop(&tab, data);
  SoSetAttribute(23, 0, 0, 0, data);
  SoEndDefinition(SoDefinitionStyle, id, data);
  return id;
}

void DefineStyles(VcardData *data) {
  VcardStyleDef record = {sizeof(VcardStyleDef), 0, CharacterStyle, 0, 0xFFFFFFFF, 0xFFFFFFFF, 0};
  data->StyleLabel = DefineStyle(kLabelRow, &record, data);
  data->StylePlain = DefineStyle(kPlainRow, &record, data);
  data->StyleSubLabel = DefineStyle(kSubLabelRow, &record, data);
  for (int i = 0; i < 4; ++i) {
    data->StyleHeading[i] = DefineStyle(kHeadingRow[i], &record, data);
  }
  data->StyleListPara = DefineStyle(kListRow, &record, data);
  data->StyleBodyPara = DefineStyle(kBodyRow, &record, data);
}

}  // namespace

int32_t VwStreamSection(uint64_t, VcardData *data) {
  SoBeginSection(data);
  SoRoutine88(data);
  SoRoutine89(data);
  ClearIndex(data);
  if (data->StyleCount == 0) DefineStyles(data);
  return 0;
}

// The listing of properties: a table says which form a property has and under which label; a form
// is one function, the sequence of its calls.

#include "vcrd/output/property_listing.h"

#include <iterator>
#include <span>

#include "vcrd/objects/placement.h"
#include "vcrd/output/card_boundaries.h"
#include "vcrd/output/characters.h"
#include "vcrd/output/generic_property.h"
#include "vcrd/output/values.h"
#include "vcrd/parser/value_readers.h"
#include "vcrd/parser/vcard_init.h"

namespace {

struct ListingRow;
using Form = void (*)(const ListingRow &row, VcardData *data);

enum Formats : uint8_t { Both, Calendar };

struct ListingRow {
  VcardProperty Property;
  Formats In;
  Form Write;
  uint32_t Label;
  std::span<const uint32_t> FieldLabels = {};
};

// The steps that the forms are built from.

void Head(uint32_t paragraphStyle, uint32_t label, VcardData *data) {
  SoUseStyle(paragraphStyle, data);
  SoUseStyle(data->StyleLabel, data);
  SoEmitResourceString(label, data);
}

void Value(VcardData *data) { VcardPutValueBy(data->Encoding, data); }

void Row(uint32_t label, const VcardText &text, VcardData *data) {
  SoUseStyle(data->StyleSubLabel, data);
  SoEmitSpecial(SoSpecialTab, data);
  SoEmitResourceString(label, data);
  SoUseStyle(data->StylePlain, data);
  SoEmitSpecial(SoSpecialTab, data);
  VcardPutString(text, 1, data);
}

void LineAndClose(VcardData *data) {
  SoEmitSpecial(SoSpecialLineBreak, data);
  VcardEndParagraph(data);
}

// A value that can be Base64: placed as an object and not written.
void ValueOrObject(VcardData *data) {
  if (data->Encoding == EncodingBase64) {
    uint32_t start;
    uint32_t end;
    VcardFindBase64Extent(&start, &end, data);
    VcardPutObject(start, end, data);
  } else {
    Value(data);
  }
}

// The forms.

void LabelledForm(const ListingRow &row, VcardData *data) {
  Head(data->StyleBodyPara, row.Label, data);
  VcardPutLineBreak(data);
  SoUseStyle(data->StylePlain, data);
  Value(data);
  LineAndClose(data);
}

void TypedForm(const ListingRow &row, VcardData *data) {
  Head(data->StyleBodyPara, row.Label, data);
  SoUseStyle(data->StylePlain, data);
  VcardPutTypes(data);
  SoUseStyle(data->StylePlain, data);
  Value(data);
  LineAndClose(data);
}

void ShortTypedForm(const ListingRow &row, VcardData *data) {
  Head(data->StyleBodyPara, row.Label, data);
  SoUseStyle(data->StylePlain, data);
  VcardPutTypes(data);
  Value(data);
  LineAndClose(data);
}

// A key isn't asked for its value kind, so a URL is written as text.
void KeyForm(const ListingRow &row, VcardData *data) {
  Head(data->StyleBodyPara, row.Label, data);
  SoUseStyle(data->StylePlain, data);
  VcardPutTypes(data);
  ValueOrObject(data);
  LineAndClose(data);
}

// A value of another kind than inline ends the form without its close: the next property's styles
// follow directly.
void MediaForm(const ListingRow &row, VcardData *data) {
  Head(data->StyleBodyPara, row.Label, data);
  VcardPutLineBreak(data);
  SoUseStyle(data->StylePlain, data);
  if (data->ValueKind != ValueInline) {
    VcardPutValueKind(data);
    return;
  }
  ValueOrObject(data);
  LineAndClose(data);
}

void SingleFieldForm(const ListingRow &row, VcardData *data) {
  VcardReadField(0, data);
  Head(data->StyleBodyPara, row.Label, data);
  VcardPutLineBreak(data);
  SoUseStyle(data->StylePlain, data);
  SoEmitSpecial(SoSpecialTab, data);
  SoEmitSpecial(SoSpecialTab, data);
  VcardPutString(data->Value[0], 1, data);
  VcardEndParagraph(data);
}

// Empty fields have their row too.
void NameForm(const ListingRow &row, VcardData *data) {
  VcardReadFields(data);
  Head(data->StyleListPara, row.Label, data);
  VcardPutLineBreak(data);
  for (size_t i = 0; i < row.FieldLabels.size(); ++i) {
    Row(row.FieldLabels[i], data->Value[i], data);
  }
  VcardEndParagraph(data);
}

void AddressForm(const ListingRow &row, VcardData *data) {
  VcardReadFields(data);
  Head(data->StyleListPara, row.Label, data);
  SoUseStyle(data->StylePlain, data);
  VcardPutTypes(data);
  for (size_t i = 0; i < row.FieldLabels.size(); ++i) {
    Row(row.FieldLabels[i], data->Value[i], data);
  }
  VcardEndParagraph(data);
}

void FieldLinesForm(const ListingRow &row, VcardData *data) {
  VcardReadFields(data);
  Head(data->StyleBodyPara, row.Label, data);
  VcardPutLineBreak(data);
  SoUseStyle(data->StylePlain, data);
  for (const VcardText &value : data->Value) {
    if (value[0] == '\0') continue;
    SoEmitSpecial(SoSpecialTab, data);
    SoEmitSpecial(SoSpecialTab, data);
    VcardPutString(value, 1, data);
  }
  VcardEndParagraph(data);
}

void AlarmForm(const ListingRow &row, VcardData *data) {
  VcardReadFields(data);
  Head(data->StyleListPara, row.Label, data);
  VcardPutLineBreak(data);
  SoUseStyle(data->StylePlain, data);
  for (size_t i = 0; i < row.FieldLabels.size(); ++i) {
    if (data->Value[i][0] != '\0') Row(row.FieldLabels[i], data->Value[i], data);
  }
  VcardEndParagraph(data);
}

// The value stands on the label's line and in its style.
void AttendeeForm(const ListingRow &row, VcardData *data) {
  Head(data->StyleListPara, row.Label, data);
  Value(data);
  static constexpr VcardLiteral kNothing = "";
  VcardPutString(kNothing, 1, data);
  const VcardText *parameters[] = {&data->Role, &data->Status, &data->Rsvp, &data->Expect};
  for (size_t i = 0; i < row.FieldLabels.size(); ++i) {
    if ((*parameters[i])[0] != '\0') Row(row.FieldLabels[i], *parameters[i], data);
  }
  VcardEndParagraph(data);
}

void AttachForm(const ListingRow &row, VcardData *data) {
  Head(data->StyleBodyPara, row.Label, data);
  VcardPutLineBreak(data);
  SoUseStyle(data->StylePlain, data);
  if (data->ValueKind == ValueBinary && data->Encoding == EncodingBase64) {
    VcardPutAttach(data);
  } else {
    Value(data);
  }
  LineAndClose(data);
}

void SkipNestedCard(const ListingRow &, VcardData *data) { VcardSkipAgent(data); }
void EndCard(const ListingRow &, VcardData *data) { VcardFindNextCard(data); }
void NoForm(const ListingRow &, VcardData *data) { VcardSkipValue(data); }
void GenericForm(const ListingRow &, VcardData *data) { VcardPutGenericProp(data); }

// In the order of VcardProperty.
constexpr ListingRow kListing[] = {
    {PropBegin, Both, NoForm, 0},
    {PropEnd, Both, EndCard, 0},
    {PropAdr, Both, AddressForm, 79388, VcardInit.AdrFieldIds},
    {PropOrg, Both, FieldLinesForm, 79401},
    {PropN, Both, NameForm, 79399, VcardInit.NameFieldIds},
    {PropAgent, Both, SkipNestedCard, 0},
    {PropLogo, Both, MediaForm, 79396},
    {PropPhoto, Both, MediaForm, 79402},
    {PropLabel, Both, ShortTypedForm, 79397},
    {PropFn, Both, LabelledForm, 79393},
    {PropTitle, Both, LabelledForm, 79407},
    {PropSound, Both, MediaForm, 79405},
    {PropVersion, Both, LabelledForm, 79411},
    {PropTel, Both, TypedForm, 79406},
    {PropEmail, Both, TypedForm, 79392},
    {PropTz, Both, LabelledForm, 79408},
    {PropGeo, Both, LabelledForm, 79394},
    {PropLocation, Both, LabelledForm, 79373},
    {PropNote, Both, LabelledForm, 79400},
    {PropUrl, Both, LabelledForm, 79410},
    {PropBday, Both, LabelledForm, 79391},
    {PropRole, Both, LabelledForm, 79404},
    {PropRev, Both, SingleFieldForm, 79403},
    {PropUid, Both, LabelledForm, 79409},
    {PropKey, Both, KeyForm, 79395},
    {PropMailer, Both, LabelledForm, 79398},
    {PropX, Both, GenericForm, 0},  // never found
    {PropSummary, Calendar, LabelledForm, 79609},
    {PropCategories, Calendar, FieldLinesForm, 85562},
    {PropClass, Calendar, LabelledForm, 85562},
    {PropDcreated, Calendar, LabelledForm, 79364},
    {PropCompleted, Calendar, LabelledForm, 79365},
    {PropDescription, Calendar, LabelledForm, 79366},
    {PropDalarm, Calendar, AlarmForm, 79367, VcardInit.DalarmFieldIds},
    {PropDue, Calendar, LabelledForm, 79368},
    {PropDtend, Calendar, LabelledForm, 79369},
    {PropExdate, Calendar, LabelledForm, 79370},
    {PropExrule, Calendar, LabelledForm, 79371},
    {PropLastModified, Calendar, LabelledForm, 79372},
    {PropMAlarm, Calendar, LabelledForm, 79374},
    {PropRnum, Calendar, LabelledForm, 79375},
    {PropPriority, Calendar, LabelledForm, 79543},
    {PropPalarm, Calendar, AlarmForm, 79376, VcardInit.DalarmFieldIds},
    {PropRelatedTo, Calendar, LabelledForm, 79377},
    {PropRdate, Calendar, FieldLinesForm, 79378},
    {PropRrule, Calendar, LabelledForm, 79379},
    {PropResources, Calendar, FieldLinesForm, 79380},
    {PropSequence, Calendar, LabelledForm, 79381},
    {PropDtstart, Calendar, LabelledForm, 79382},
    {PropStatus, Calendar, LabelledForm, 85564},
    {PropTransp, Calendar, LabelledForm, 79383},
    {PropAttendee, Calendar, AttendeeForm, 79360, VcardInit.AttendeeParmIds},
    {PropAalarm, Calendar, AlarmForm, 79362, VcardInit.AalarmFieldIds},
    {PropMalarm, Calendar, AlarmForm, 79374, VcardInit.MalarmFieldIds},
    {PropAttach, Calendar, AttachForm, 79361},
    {PropMsCardPicture, Both, MediaForm, 79402},
    {PropOther, Both, GenericForm, 0},
};

consteval bool IsInOrder() {
  for (size_t i = 0; i < std::size(kListing); ++i) {
    if (kListing[i].Property != i) return false;
  }
  return std::size(kListing) == PropOther + 1;
}
static_assert(IsInOrder());

}  // namespace

void VcardListProperty(VcardProperty property, VcardData *data) {
  const ListingRow *row = &kListing[property];
  if (row->In == Calendar && data->FilterId != VcardFormatVcalendar) row = &kListing[PropOther];
  row->Write(*row, data);
}

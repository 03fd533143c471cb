// The summary at the head of a section: a business card of a vCard, four lines of a vCalendar.
//
// It jumps to the positions that the indexing pass noted and reads the values there. It restores
// the charset and the encoding of a line only where they were noted; elsewhere what an earlier
// value left holds on. It leaves `Charset`, `Encoding`, `Types` and `Value` as its last step left
// them, so the first line of the listing adds its types to those of the last entry here. A stop
// that the host asks for is noted, and the summary runs to its end.

#include "vcrd/input/stream.h"
#include "vcrd/output/characters.h"
#include "vcrd/output/values.h"
#include "vcrd/parser/handover.h"
#include "vcrd/parser/value_readers.h"

namespace {

bool IsSet(uint32_t position) { return position != kNoPosition; }

void GoTo(uint32_t position, VcardData *data) {
  data->HasPushback = 0;
  VcardStreamSeek(data->Stream, position);
}

void PutName(VcardData *data) {
  SoUseStyle(data->StyleHeading[0], data);
  if (IsSet(data->FnPos)) {
    GoTo(data->FnPos, data);
    data->Encoding = data->BlockEncoding[BlockFn];
    VcardCopyText(data->Charset, data->FnCharset);
    VcardPutValueBy(data->BlockEncoding[BlockFn], data);
    VcardEndParagraph(data);
  } else if (IsSet(data->NPos)) {
    GoTo(data->NPos, data);
    VcardCopyText(data->Charset, data->NCharset);
    VcardReadFields(data);
    VcardPutString(data->Value[3], 0, data);  // prefix
    SoEmitSpecial(SoSpecialSeparator, data);
    VcardPutString(data->Value[1], 0, data);  // given name
    SoEmitSpecial(SoSpecialSeparator, data);
    VcardPutString(data->Value[2], 0, data);  // additional names
    SoEmitSpecial(SoSpecialSeparator, data);
    VcardPutString(data->Value[0], 0, data);  // family name
    SoEmitSpecial(SoSpecialSeparator, data);
    VcardPutString(data->Value[4], 0, data);  // suffix
    VcardEndParagraph(data);
  }
}

void PutTitle(VcardData *data) {
  if (!IsSet(data->TitlePos)) return;
  SoUseStyle(data->StyleHeading[1], data);
  GoTo(data->TitlePos, data);
  VcardCopyText(data->Charset, data->TitleCharset);
  VcardPutValueBy(data->BlockEncoding[BlockTitle], data);
  VcardEndParagraph(data);
}

void PutFieldLine(const VcardText &value, VcardData *data) {
  if (value[0] != '\0') VcardPutString(value, 1, data);
}

void PutOrganisation(VcardData *data) {
  if (!IsSet(data->OrgPos)) return;
  SoUseStyle(data->StyleHeading[2], data);
  GoTo(data->OrgPos, data);
  VcardCopyText(data->Charset, data->OrgCharset);
  VcardReadFields(data);
  for (const VcardText &value : data->Value) PutFieldLine(value, data);
  VcardEndParagraph(data);
}

constexpr VcardLiteral kComma = ", ";
constexpr VcardLiteral kBlanks = "   ";

// A field that shares its line with the next one, when there is a next one.
void PutFieldBefore(const VcardText &value, const VcardLiteral &separator, const VcardText &next,
                    VcardData *data) {
  if (value[0] == '\0') return;
  if (next[0] == '\0') {
    VcardPutString(value, 1, data);
  } else {
    VcardPutString(value, 0, data);
    VcardPutString(separator, 0, data);
  }
}

void PutAddressFields(VcardData *data) {
  VcardReadFields(data);
  const auto &[postBox, extended, street, locality, region, postalCode, country] = data->Value;
  PutFieldLine(postBox, data);
  PutFieldLine(extended, data);
  PutFieldLine(street, data);
  PutFieldBefore(locality, kComma, region, data);
  PutFieldBefore(region, kBlanks, postalCode, data);
  PutFieldLine(postalCode, data);
  PutFieldLine(country, data);
}

struct AddressSource {
  uint32_t Position;
  const VcardText &Charset;
  bool IsLabel;  // the text of a LABEL line, not the fields of an ADR line
};

void PutAddress(VcardData *data) {
  const AddressSource sources[] = {
      {data->IntlLabelPos, data->IntlLabelCharset, true},
      {data->LabelPos, data->LabelCharset, true},
      {data->IntlAdrPos, data->IntlAdrCharset, false},
      {data->AdrPos, data->AdrCharset, false},
  };
  for (const AddressSource &source : sources) {
    if (!IsSet(source.Position)) continue;
    GoTo(source.Position, data);
    VcardCopyText(data->Charset, source.Charset);
    SoUseStyle(data->StyleHeading[3], data);
    if (source.IsLabel) {
      VcardPutValueBy(data->BlockEncoding[BlockLabel], data);
    } else {
      PutAddressFields(data);
    }
    SoEmitSpecial(SoSpecialLineBreak, data);
    VcardEndParagraph(data);
    return;
  }
}

// The telephone numbers or the mail addresses, each with its types on a line of its own.
void PutTypedLines(const uint32_t *positions, const int32_t *encodings, const VcardTypes *types,
                   VcardData *data) {
  SoUseStyle(data->StyleHeading[3], data);
  for (int i = 0; i < kSlotCount && IsSet(positions[i]); ++i) {
    GoTo(positions[i], data);
    VcardPutValueBy(encodings[i], data);
    data->Types = types[i];
    VcardPutTypes(data);
  }
  VcardEndParagraph(data);
}

// Nothing stands between two URLs: they run on.
void PutUrls(VcardData *data) {
  SoUseStyle(data->StyleHeading[3], data);
  for (int i = 0; i < kSlotCount && IsSet(data->UrlPos[i]); ++i) {
    GoTo(data->UrlPos[i], data);
    VcardPutValueBy(data->UrlEncoding[i], data);
  }
  SoEmitSpecial(SoSpecialLineBreak, data);
  VcardEndParagraph(data);
}

void PutCalendarLine(uint32_t position, VcardBlock block, VcardData *data) {
  if (!IsSet(position)) return;
  SoUseStyle(data->StyleHeading[1], data);
  GoTo(position, data);
  VcardPutValueBy(data->BlockEncoding[block], data);
  VcardEndParagraph(data);
}

}  // namespace

void VcardPutSummary(VcardData *data) {
  if (data->FilterId == VcardFormatVcard) {
    PutName(data);
    PutTitle(data);
    PutOrganisation(data);
    PutAddress(data);
    PutTypedLines(data->TelPos, data->TelEncoding, data->TelTypes, data);
    PutTypedLines(data->EmailPos, data->EmailEncoding, data->EmailTypes, data);
    PutUrls(data);
  } else {
    PutCalendarLine(data->SummaryPos, BlockSummary, data);
    PutCalendarLine(data->LocationPos, BlockLocation, data);
    PutCalendarLine(data->DtstartPos, BlockDtstart, data);
    PutCalendarLine(data->StatusPos, BlockStatus, data);
  }
}

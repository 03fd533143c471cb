// The indexing pass.
//
// The first line of a name gives the position. Its companions (encoding, charset, types) can come
// from other lines: most are copied on every line of the name, so they are the last one's.
//
// The values of the vCard names that are indexed are left unread. The scanner goes on in them as
// if they were further content lines: text before a colon counts as a property name, and text
// between semicolons as parameters, which stay in force on the next line. A value that ends in a
// semicolon draws the next line's name in as a parameter. Hosts know the summaries that come of
// it, so this is kept.

#include "vcrd/output/indexing_pass.h"

#include "vcrd/parser/value_readers.h"

namespace {

// Answers whether the position was free.
bool NotePosition(uint32_t *position, const VcardData *data) {
  if (*position != kNoPosition) return false;
  *position = data->TokenPos;
  return true;
}

void NoteTextLine(uint32_t *position, VcardText &charset, VcardData *data) {
  NotePosition(position, data);
  VcardCopyText(charset, data->Charset);
}

// Only the first address of each class counts, with all its companions.
void NoteAddress(uint32_t *position, VcardText &charset, VcardTypes *types, VcardData *data) {
  if (!NotePosition(position, data)) return;
  VcardCopyText(charset, data->Charset);
  *types = data->Types;
}

// The next free one of the ten slots; lines beyond them are not indexed. `types` can be null.
void NoteSlot(uint32_t *positions, int32_t *encodings, VcardTypes *types, VcardData *data) {
  for (int i = 0; i < kSlotCount; ++i) {
    if (!NotePosition(&positions[i], data)) continue;
    encodings[i] = data->Encoding;
    if (types != nullptr) types[i] = data->Types;
    return;
  }
}

void IndexCardProperty(VcardProperty property, VcardData *data) {
  const bool intl = data->Types.Flag[TypeIntl] == 1;
  switch (property) {
    case PropN:
      NoteTextLine(&data->NPos, data->NCharset, data);
      break;
    case PropFn:
      NoteTextLine(&data->FnPos, data->FnCharset, data);
      data->BlockEncoding[BlockFn] = data->Encoding;
      break;
    case PropAdr:
      if (intl) {
        NoteAddress(&data->IntlAdrPos, data->IntlAdrCharset, &data->IntlAdrTypes, data);
      } else {
        NoteAddress(&data->AdrPos, data->AdrCharset, &data->AdrTypes, data);
      }
      break;
    case PropLabel:
      if (intl) {
        NoteTextLine(&data->IntlLabelPos, data->IntlLabelCharset, data);
      } else {
        NoteTextLine(&data->LabelPos, data->LabelCharset, data);
      }
      data->BlockEncoding[BlockLabel] = data->Encoding;
      data->LabelTypes = data->Types;
      break;
    case PropTel:
      NoteSlot(data->TelPos, data->TelEncoding, data->TelTypes, data);
      break;
    case PropOrg:
      NoteTextLine(&data->OrgPos, data->OrgCharset, data);
      break;
    case PropTitle:
      NoteTextLine(&data->TitlePos, data->TitleCharset, data);
      data->BlockEncoding[BlockTitle] = data->Encoding;
      break;
    case PropEmail:
      NoteSlot(data->EmailPos, data->EmailEncoding, data->EmailTypes, data);
      break;
    case PropUrl:
      NoteSlot(data->UrlPos, data->UrlEncoding, nullptr, data);
      break;
    default:
      VcardSkipValue(data);
      break;
  }
}

// Values of a calendar are consumed, so they never reach the scanner.
void NoteCalendarLine(uint32_t *position, VcardBlock block, VcardData *data) {
  NotePosition(position, data);
  data->BlockEncoding[block] = data->Encoding;
  VcardSkipValue(data);
}

void IndexCalendarProperty(VcardProperty property, VcardData *data) {
  switch (property) {
    case PropSummary:
      NoteCalendarLine(&data->SummaryPos, BlockSummary, data);
      break;
    case PropLocation:
      NoteCalendarLine(&data->LocationPos, BlockLocation, data);
      break;
    case PropDtstart:
      NoteCalendarLine(&data->DtstartPos, BlockDtstart, data);
      break;
    case PropStatus:
      NoteCalendarLine(&data->StatusPos, BlockStatus, data);
      break;
    default:
      VcardSkipValue(data);
      break;
  }
}

}  // namespace

void VcardIndexProperty(VcardProperty property, VcardData *data) {
  if (property == PropEnd) {
    data->Finished = 1;  // whatever it ends; its value isn't looked at
  } else if (property == PropVersion) {
    data->Version = VcardReadVersion(data);
  } else if (data->FilterId == VcardFormatVcard) {
    IndexCardProperty(property, data);
  } else {
    IndexCalendarProperty(property, data);
  }
}

// The record of one stream: everything that changes while a card is read, but for the buffer.
//
// It is one flat record in four regions. The save region is what a host takes with VwGetData and
// gives back with VwSetData, so all that is needed to go on from a stop lies there, and no pointer
// does. The stream region is cleared with it when a stream is opened. The routine region and the
// host region survive that.

#ifndef PX_VCRD_FRAME_VCARD_DATA_H
#define PX_VCRD_FRAME_VCARD_DATA_H

#include <cstddef>
#include <cstdint>

#include "px/vcrd.h"
#include "vcrd/frame/text.h"

// A position that wasn't seen.
inline constexpr uint32_t kNoPosition = 0xFFFFFFFF;

// The numbers that `Encoding` holds.
enum VcardEncoding : int32_t {
  Encoding7bit = 0,
  Encoding8bit = 1,
  EncodingQuotedPrintable = 2,
  EncodingBase64 = 3,
  EncodingExtension = 4,
  EncodingUtf8 = 5
};

// The numbers that `ValueKind` holds.
enum VcardValueKind : int32_t {
  ValueInline = 0,
  ValueUrl = 1,
  ValueContentId = 2,
  ValueExtension = 3,
  ValueBinary = 4
};

// The set of TYPE names of a line: a flag for each row of the type table, then two more.
struct VcardTypes {
  int16_t Flag[52];
};
enum { TypeIntl = 1, TypeExtension = 50, TypeAny = 51 };

// The places of `BlockEncoding`.
enum VcardBlock {
  BlockFn = 0,
  BlockTitle = 1,
  BlockLabel = 2,
  BlockSummary = 3,
  BlockLocation = 4,
  BlockDtstart = 5,
  BlockStatus = 6
};

inline constexpr int kSlotCount = 10;  // TEL, EMAIL and URL lines that the summary shows
inline constexpr int kFieldCount = 7;  // fields of a structured value
inline constexpr int kRoutineCount = 148;

struct VcardData {
  // Save region.
  int32_t ParseState;
  uint32_t SavedPos;
  int16_t IndexDone;    // 0 in the indexing pass, 1 in the listing pass
  int16_t HasPushback;  // 1: PushbackChar is the next byte
  uint8_t PushbackChar;
  uint32_t NextObjectId;
  uint32_t ParmPos;   // where the current line's parameters begin
  uint32_t TokenPos;  // where the current token began
  int16_t PassCount;  // passes finished in this section
  uint32_t TelPos[kSlotCount];
  uint32_t EmailPos[kSlotCount];
  uint32_t UrlPos[kSlotCount];
  int32_t TelEncoding[kSlotCount];
  int32_t EmailEncoding[kSlotCount];
  int32_t UrlEncoding[kSlotCount];
  int32_t BlockEncoding[7];
  VcardTypes TelTypes[kSlotCount];
  VcardTypes EmailTypes[kSlotCount];
  VcardTypes LabelTypes;
  VcardTypes IntlAdrTypes;
  VcardTypes AdrTypes;
  uint32_t FnPos, NPos, TitlePos, OrgPos;
  uint32_t IntlLabelPos, LabelPos;
  uint32_t IntlAdrPos, AdrPos;
  uint32_t SummaryPos, LocationPos, DtstartPos, StatusPos;
  VcardText FnCharset, NCharset, TitleCharset, OrgCharset;
  VcardText IntlLabelCharset, LabelCharset, IntlAdrCharset, AdrCharset;
  uint8_t SaveReserved[16];

  // Stream region.
  uint16_t FilterId;
  VcardStream *Stream;
  VcardText GroupName;
  VcardText PropName;
  VcardText Value[kFieldCount];
  int32_t ParmId;
  VcardTypes Types;
  VcardText TypeExt;
  int32_t ValueKind;
  VcardText ValueExt;
  int32_t Encoding;
  VcardText EncodingExt;
  VcardText Charset;  // in force until it is replaced; it can come from an earlier line
  VcardText Language;
  VcardText Role, Status, Rsvp, Expect;
  VcardText ExtParmName, ExtParmValue;
  int16_t Version;  // 1 "2.1" and anything unknown, 2 "2.0", 3 "3.0"
  int16_t AtEof;
  uint16_t Finished;       // the pass ended at an END line
  uint16_t StopRequested;  // the host answered 1 to a paragraph's end
  uint32_t StyleCount;     // 0: the styles aren't defined yet
  uint32_t StyleLabel, StyleSubLabel, StylePlain;
  uint32_t StyleListPara, StyleBodyPara;
  uint32_t StyleHeading[4];
  // What the line has set that is forgotten behind it; most lines set neither.
  uint8_t HasNamedParameters;
  uint8_t HasFields;
  uint8_t StreamReserved[130];

  // Routine region.
  SoRoutine Routine[kRoutineCount];

  // Host region.
  uint64_t User[2];
  uint64_t MemHandle;
};

// Forgets all positions of the index.
inline void VcardForgetPositions(VcardData *data) {
  for (int i = 0; i < kSlotCount; ++i) {
    data->TelPos[i] = data->EmailPos[i] = data->UrlPos[i] = kNoPosition;
  }
  data->FnPos = data->NPos = data->TitlePos = data->OrgPos = kNoPosition;
  data->IntlLabelPos = data->LabelPos = data->IntlAdrPos = data->AdrPos = kNoPosition;
  data->SummaryPos = data->LocationPos = data->DtstartPos = data->StatusPos = kNoPosition;
}

inline constexpr size_t kSaveSize = offsetof(VcardData, FilterId);
inline constexpr size_t kOpenSize = offsetof(VcardData, Routine);
static_assert(kSaveSize == 4804 && kSaveSize == VcardSavedSize);
static_assert(offsetof(VcardData, SaveReserved) + sizeof(VcardData::SaveReserved) == kSaveSize);
static_assert(kOpenSize == 10232);
static_assert(offsetof(VcardData, StreamReserved) + sizeof(VcardData::StreamReserved) == kOpenSize);
static_assert(sizeof(VcardTypes) == 104);
static_assert(sizeof(VcardData) == 11440);

#endif

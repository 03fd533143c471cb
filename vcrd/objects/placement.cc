// The extent of Base64 text is found byte by byte with the raw read. TakeLinesInBuffer is the fast
// way over what lies in the buffer, whole lines of it; it gives back in front of all else.

#include "vcrd/objects/placement.h"

#include "vcrd/frame/host_routines.h"
#include "vcrd/input/logical_reader.h"
#include "vcrd/parser/base64_values.h"

static_assert(sizeof(VcardObjectRecord) == 196 && sizeof(VcardAttachmentDef) == 12);

namespace {

constexpr uint32_t kNoTitle = 79493;

// The bytes that are no Base64. Byte 128 passes, since the value table has 128 entries and the
// test for what lies behind it is "above 128".
bool IsNoBase64(int32_t byte) {
  return byte > 128 || (byte < 128 && kBase64Values[static_cast<size_t>(byte)] == 255);
}

// The same for sixteen bytes.
ByteVector IsNoBase64(ByteVector b) {
  const ByteVector letter = (b | uint8_t{0x20}) - uint8_t{'a'};
  const ByteVector digit = b - uint8_t{'/'};  // "/" stands right before the digits
  return ByteVector(letter > 25) & ByteVector(digit > 10) & ByteVector(b != '+') &
         ByteVector(b != 128);
}

constexpr VcardObjectGroup kGroup = {{0, 0, 1, 0, 0}};

// Skips white space; answers the position of the byte behind it, which is taken without a test.
uint32_t TakeFirstOfLine(VcardData *data) {
  VcardSkipSpace(data);
  return VcardStreamPosition(data->Stream) - 1;
}

// Behind the "=" that ends the text: to the end of its line, or a NUL.
void TakeLastLine(VcardStream *stream) {
  const auto endsLastLine = [](ByteVector b) {
    return IsByte(b, '\r') | IsByte(b, '\n') | IsByte(b, '\0');
  };
  int32_t r;
  do {
    VcardStreamTake(stream, FindByte(endsLastLine, stream->Ptr));
    r = VcardStreamGetByte(stream);
  } while (r != kCr && r != kLf && r != 0 && r != -1);
}

// Takes the Base64 text that lies in the buffer, and the beginnings of its lines, whose positions
// go to `line`. What stands behind it is left to the raw read.
void TakeLinesInBuffer(uint32_t *line, VcardStream *stream) {
  const VcardStretch rest = VcardStreamStretch(stream);
  const uint32_t position = VcardStreamPosition(stream);
  const uint8_t *p = FindByte<ByteVector(ByteVector)>(IsNoBase64, rest.Begin);
  while (*p == kCr || *p == kLf) {
    const uint8_t *first = p;
    while (first != rest.End && VcardIsWhite(*first)) ++first;
    if (first == rest.End) break;
    *line = position + static_cast<uint32_t>(first - rest.Begin);
    p = FindByte<ByteVector(ByteVector)>(IsNoBase64, first + 1);
  }
  VcardStreamTake(stream, p);
}

}  // namespace

void VcardFindBase64Extent(uint32_t *start, uint32_t *end, VcardData *data) {
  VcardStream *stream = data->Stream;
  uint32_t line = 0;  // where the current line begins; 0 in the first one
  *start = TakeFirstOfLine(data);
  for (;;) {
    TakeLinesInBuffer(&line, stream);
    const int32_t r = VcardStreamGetByte(stream);
    if (r == kCr || r == kLf) {
      line = TakeFirstOfLine(data);
      continue;
    }
    if (r > 0 && !IsNoBase64(r)) continue;
    if (r == '=') {
      TakeLastLine(stream);
    } else if (r > 0 && line != 0) {
      // The next content line gives itself away by its colon or semicolon: back to its beginning.
      VcardStreamSeek(stream, line);
      *end = line;
      return;
    }
    *end = VcardStreamPosition(stream);
    return;
  }
}

void VcardPutObject(uint32_t start, uint32_t end, VcardData *data) {
  uint32_t base = 0;
  SoGetObjectBase(&base, data);
  SoSetObjectData(SoObjectDataRange, start, end - start + 1, data);
  SoSetObjectData(SoObjectDataKind, 2, 0, data);
  SoCommitObjectData(data);
  const VcardObjectRecord record = {
      .Size = sizeof(VcardObjectRecord),
      .Reserved0 = 0,
      .Reserved1 = 1,
      .Reserved2 = {},
      .Group = {kGroup, kGroup, kGroup, kGroup},
      .Reserved3 = 4,
      .Reserved4 = {},
      .ObjectBase = base,
      .Reserved5 = 0xFFFFFFFF,
      .Reserved6 = {},
      .Reserved7 = 0xFFFFFFFF,
  };
  SoEmitObject(&record, data);
}

void VcardPutAttach(VcardData *data) {
  VcardText name;
  VcardLowerText(name, data->ExtParmName);
  const bool hasTitle = VcardSameText(name, "x-filename");
  uint32_t start;
  uint32_t end;
  VcardFindBase64Extent(&start, &end, data);
  uint32_t base = 0;
  SoGetObjectBase(&base, data);
  // A range by its two ends, where an object's is a start and a length.
  SoSetObjectData(SoObjectDataExtent, start, end, data);
  SoCommitObjectData(data);
  const VcardAttachmentDef record = {0, base, 0};
  const uint32_t id = data->NextObjectId;
  SoBeginDefinition(SoDefinitionAttachment, id, &record, data);
  if (hasTitle) {
    for (const char *c = data->ExtParmValue; *c != '\0'; ++c) {
      SoEmitChar(static_cast<uint8_t>(*c), data);
    }
  } else {
    SoEmitResourceString(kNoTitle, data);
    SoEmitSpecial(SoSpecialLineBreak, data);
  }
  data->NextObjectId = id + 1;
  SoEndDefinition(SoDefinitionAttachment, id, data);
}

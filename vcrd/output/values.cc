#include "vcrd/output/values.h"

#include "vcrd/input/logical_reader.h"
#include "vcrd/input/quoted_printable.h"
#include "vcrd/input/utf8.h"
#include "vcrd/output/characters.h"
#include "vcrd/parser/vcard_init.h"

namespace {

// What ends a run of bytes that go to the host as they are, for each reader, without and with
// decoding of UTF-8.
constexpr ByteSet kLineSpecial = {kTab, kLf, kCr, kBackslash};
constexpr ByteSet kLineSpecialUtf8 = kLineSpecial.With(0x80, 0xFF);
constexpr ByteSet kQpSpecial = {kTab, kLf, kCr, '=', kEnd};
constexpr ByteSet kQpSpecialUtf8 = kQpSpecial.With(0x80, 0xFF);

constexpr uint32_t kUrlLabel = 79386;
constexpr uint32_t kContentIdLabel = 79387;

// The flags of the types that have a label, in the order of VcardInit.TypeLabelIds.
constexpr int LabelledType(int place) { return place < 29 ? place : place + 19; }
static_assert(LabelledType(28) == 28 && LabelledType(29) == 48 && LabelledType(30) == 49);

bool IsUtf8(int32_t set) { return set == SoCharsetUtf8; }

// Takes and emits the bytes up to `run.End`, which are neither tab nor line end nor to be decoded.
void PutRun(VcardStretch run, VcardData *data) {
  VcardStreamTake(data->Stream, run.End);
  VcardEmitRun(run.Begin, run.End, data);
}

// One byte that a reader has delivered, with the rest of its UTF-8 form.
void PutByte(uint8_t byte, bool utf8, VcardData *data) {
  const uint16_t code =
      utf8 && byte > 127 ? static_cast<uint16_t>(VcardDecodeUtf8(byte, data->Stream, data)) : byte;
  VcardPutChar(code, data);
}

// Logical characters to the end of the line, of which `c` is the first, delivered with `result`.
void PutLine(uint8_t c, int32_t result, bool utf8, VcardData *data) {
  const ByteSet &stop = utf8 ? kLineSpecialUtf8 : kLineSpecial;
  while (result == 0) {
    PutByte(c, utf8, data);
    PutRun(VcardPlainRun(stop, data), data);
    result = VcardGetChar(&c, data);
  }
}

void PutIndent(const VcardData *data) {
  if (data->IndexDone == 0) return;
  SoEmitSpecial(SoSpecialTab, data);
  SoEmitSpecial(SoSpecialTab, data);
}

// Raw bytes to the end of a quoted-printable value.
void PutQpText(bool utf8, VcardData *data) {
  const ByteSet &stop = utf8 ? kQpSpecialUtf8 : kQpSpecial;
  VcardStream *stream = data->Stream;
  while (data->AtEof != 1) {
    const VcardStretch rest = VcardStreamStretch(stream);
    PutRun({rest.Begin, FindByteOf(stop, rest.Begin, rest.End)}, data);
    auto c = static_cast<uint8_t>(VcardStreamGetByte(stream));
    if (c == kCr || c == kLf || c == kEnd) return;
    if (c == '=') {
      VcardDecodeQp(&c, stream, &data->AtEof);
      if (c == kCr) continue;
      if (c == kLf) {
        VcardPutLineBreak(data);
        PutIndent(data);
        continue;
      }
    }
    PutByte(c, utf8, data);
  }
}

}  // namespace

void VcardPutValue(VcardData *data) {
  PutIndent(data);
  const int32_t set = VcardCharsetId(data);
  SoSetCharset(static_cast<uint32_t>(set), data);
  uint8_t c;
  int32_t result;
  do {
    result = VcardGetChar(&c, data);
  } while (result == 0 && (c == kSpace || c == kTab));
  PutLine(c, result, IsUtf8(set), data);
  VcardRestoreCharset(set, data);
}

void VcardPutValueQp(VcardData *data) {
  PutIndent(data);
  // The summary restores no encoding for most values, but the UTF-8 decoder goes by it.
  if (data->IndexDone == 0) data->Encoding = EncodingQuotedPrintable;
  const int32_t set = VcardCharsetId(data);
  SoSetCharset(static_cast<uint32_t>(set), data);
  PutQpText(IsUtf8(set), data);
  VcardRestoreCharset(set, data);
}

void VcardPutValueBy(int32_t encoding, VcardData *data) {
  if (encoding == EncodingQuotedPrintable) {
    VcardPutValueQp(data);
  } else {
    VcardPutValue(data);
  }
}

int32_t VcardPutValueKind(VcardData *data) {
  SoUseStyle(data->StyleListPara, data);
  SoUseStyle(data->StyleSubLabel, data);
  SoEmitSpecial(SoSpecialTab, data);
  if (data->ValueKind != ValueUrl && data->ValueKind != ValueContentId) return 1;
  SoEmitResourceString(data->ValueKind == ValueUrl ? kUrlLabel : kContentIdLabel, data);
  SoEmitSpecial(SoSpecialTab, data);
  SoUseStyle(data->StylePlain, data);
  const int32_t set = VcardCharsetId(data);
  SoSetCharset(static_cast<uint32_t>(set), data);
  uint8_t c;
  const int32_t result = VcardGetChar(&c, data);
  PutLine(c, result, IsUtf8(set), data);
  VcardRestoreCharset(set, data);
  SoEmitSpecial(SoSpecialLineBreak, data);
  return 1;
}

void VcardPutPlainLine(VcardData *data) {
  uint8_t c;
  const int32_t result = VcardGetChar(&c, data);
  PutLine(c, result, false, data);
}

void VcardPutTypes(const VcardData *data) {
  if (data->Types.Flag[TypeAny] == 0) {
    SoEmitSpecial(SoSpecialLineBreak, data);
    return;
  }
  VcardPutString("        ( ", 0, data);
  for (int place = 0; place < static_cast<int>(VcardInit.TypeLabelIds.size()); ++place) {
    if (data->Types.Flag[LabelledType(place)] != 1) continue;
    SoEmitResourceString(VcardInit.TypeLabelIds[static_cast<size_t>(place)], data);
    SoEmitSpecial(SoSpecialSeparator, data);
  }
  if (data->Types.Flag[TypeExtension] == 1) {
    VcardPutString(data->TypeExt, 0, data);
    SoEmitSpecial(SoSpecialSeparator, data);
  }
  VcardPutString(" )", 1, data);
}

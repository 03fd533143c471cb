// Values go to the host as they are read, whatever their length.
//
// There are two ways through a value. The slow one takes it character by character: PutLine from
// VcardGetChar, PutQpText from the raw read and VcardDecodeQp. The fast one, PutLineInBuffer and
// PutQpInBuffer, does the same with what lies in the buffer: it emits the bytes between two special
// ones as a run, and folds and escapes from where they stand, those of PutLineInBuffer also UTF-8
// forms. In front of anything that isn't whole in the buffer, or that only the readers know to
// handle, it gives back to the slow one, which takes one character.

#include "vcrd/output/values.h"

#include "vcrd/input/logical_reader.h"
#include "vcrd/input/quoted_printable.h"
#include "vcrd/input/utf8.h"
#include "vcrd/output/characters.h"
#include "vcrd/parser/vcard_init.h"

namespace {

constexpr uint32_t kUrlLabel = 79386;
constexpr uint32_t kContentIdLabel = 79387;

constexpr VcardLiteral kTypesBegin = "        ( ";
constexpr VcardLiteral kTypesEnd = " )";

// The types that have a label, dom to x400, x509 and pgp, in the order of VcardInit.TypeLabelIds.
constexpr int kLastInRow = 28;
constexpr int kX509 = 48;
constexpr int kPgp = 49;

bool IsUtf8(int32_t set) { return set == SoCharsetUtf8; }

// One byte that a reader has delivered, with the rest of its UTF-8 form.
inline void PutByte(uint8_t byte, bool utf8, VcardData *data) {
  const uint16_t code =
      utf8 && byte > 127 ? static_cast<uint16_t>(VcardDecodeUtf8(byte, data->Stream, data)) : byte;
  VcardPutChar(code, data);
}

// What ends a run of bytes that go to the host as they are. All control characters count, though
// most of them go to the host like others.
ByteVector IsLineSpecial(ByteVector b) { return IsControl(b) | IsByte(b, '\\'); }
ByteVector IsLineSpecialUtf8(ByteVector b) { return IsControlOrHigh(b) | IsByte(b, '\\'); }
ByteVector IsQpSpecial(ByteVector b) {
  return IsControl(b) | IsByte(b, '=') | ByteVector(b == 0xFF);
}
ByteVector IsQpSpecialUtf8(ByteVector b) { return IsControlOrHigh(b) | IsByte(b, '='); }

// Emits the two or three bytes of the UTF-8 form at `p` and answers what stands behind it; null
// when it stands too near the buffer's end, when it has no code, or when an escape can stand in it.
const uint8_t *PutUtf8InBuffer(const uint8_t *p, const uint8_t *end, const VcardData *data) {
  if (end - p < 3 || data->Encoding == EncodingQuotedPrintable) return nullptr;
  switch (VcardLeadingOnes(*p)) {
    case 2:
      VcardPutChar(VcardJoinUtf8(p[0], p[1]), data);
      return p + 2;
    case 3:
      VcardPutChar(VcardJoinUtf8(p[0], p[1], p[2]), data);
      return p + 3;
    default:
      return nullptr;
  }
}

// Emits the escape at `p`, which begins with a backslash, and answers what stands behind it; null
// when it isn't whole in the buffer. A backslash that is none stands for itself.
const uint8_t *PutEscapeInBuffer(const uint8_t *p, const uint8_t *end, const VcardData *data) {
  if (data->Version == 1) {
    SoEmitChar(kBackslash, data);
    return p + 1;
  }
  if (end - p < 2) return nullptr;
  switch (p[1]) {
    case ',':
    case ';':
    case kBackslash:
      SoEmitChar(p[1], data);
      return p + 2;
    case 'n':
    case 'N':
      VcardPutLineBreak(data);
      return p + 2;
    default:
      SoEmitChar(kBackslash, data);
      return p + 1;
  }
}

// The fast way of PutLine: the characters that lie in the buffer. Answers true when the line has
// ended, false in front of a character that is left to VcardGetChar.
bool PutLineInBuffer(bool utf8, VcardData *data) {
  if (data->HasPushback != 0) return false;
  const VcardStretch rest = VcardStreamStretch(data->Stream);
  const uint8_t *p = rest.Begin;
  for (const uint8_t *next = p; next != nullptr;) {
    p = utf8 ? FindByte(IsLineSpecialUtf8, next) : FindByte(IsLineSpecial, next);
    VcardEmitRun(next, p, data);
    if (*p > 127) {
      next = PutUtf8InBuffer(p, rest.End, data);
    } else if (*p == kCr || *p == kLf) {
      const VcardLineEndAt lineEnd = VcardLookAtLineEnd(p, rest.End, data);
      if (lineEnd.Kind == VcardLineEnd::End) {
        VcardTakeLineEnd(lineEnd.Next, data);
        return true;
      }
      next = lineEnd.Kind == VcardLineEnd::Fold ? lineEnd.Next : nullptr;
    } else if (*p == kBackslash) {
      next = PutEscapeInBuffer(p, rest.End, data);
    } else {
      VcardPutChar(*p, data);
      next = p + 1;
    }
  }
  VcardStreamTake(data->Stream, p);
  return false;
}

// Logical characters to the end of the line.
void PutLine(bool utf8, VcardData *data) {
  while (!PutLineInBuffer(utf8, data)) {
    uint8_t c;
    if (VcardGetChar(&c, data) != 0) return;
    PutByte(c, utf8, data);
  }
}

// The same without the blanks at its head.
void PutLineBehindBlanks(bool utf8, VcardData *data) {
  VcardStream *stream = data->Stream;
  if (data->HasPushback == 0) {
    const uint8_t *p = stream->Ptr;
    while (*p == kSpace || *p == kTab) ++p;
    VcardStreamTake(stream, p);
    if (*p != kCr && *p != kLf) {
      PutLine(utf8, data);
      return;
    }
  }
  uint8_t c;
  int32_t result;
  do {
    result = VcardGetChar(&c, data);
  } while (result == 0 && (c == kSpace || c == kTab));
  if (result != 0) return;
  PutByte(c, utf8, data);
  PutLine(utf8, data);
}

void PutIndent(const VcardData *data) {
  if (data->IndexDone == 0) return;
  SoEmitSpecial(SoSpecialTab, data);
  SoEmitSpecial(SoSpecialTab, data);
}

// What VcardDecodeQp has answered: what an escape stands for, or a byte behind a soft line break.
inline void PutDecoded(uint8_t byte, bool utf8, VcardData *data) {
  if (byte == kLf) {
    VcardPutLineBreak(data);
    PutIndent(data);
  } else if (byte != kCr) {
    PutByte(byte, utf8, data);
  }
}

// Where a quoted-printable value goes on behind the soft line break at `p`; null when that isn't
// clear. The byte behind it is data, which a line end and 255 elsewhere aren't, and an equals sign
// begins an escape, but never a further soft line break.
const uint8_t *BehindSoftBreak(const uint8_t *p, const uint8_t *end) {
  const uint8_t *const behind = p + (p[1] == kCr && p[2] == kLf ? 3 : 2);
  if (end - behind < 2 || *behind == kCr || *behind == kLf || *behind == kEnd) return nullptr;
  if (*behind == '=' && (behind[1] == kCr || behind[1] == kLf)) return nullptr;
  return behind;
}

// The fast way of PutQpText: what lies in the buffer. Answers true when the value has ended, false
// in front of a byte that is left to the raw read.
bool PutQpInBuffer(bool utf8, VcardData *data) {
  const VcardStretch rest = VcardStreamStretch(data->Stream);
  const uint8_t *p = rest.Begin;
  for (const uint8_t *next = p; next != nullptr;) {
    p = utf8 ? FindByte(IsQpSpecialUtf8, next) : FindByte(IsQpSpecial, next);
    VcardEmitRun(next, p, data);
    next = nullptr;
    if (*p == '=') {
      if (p[1] == kCr || p[1] == kLf) {
        next = BehindSoftBreak(p, rest.End);
      } else if (rest.End - p >= 3) {
        const uint8_t byte = VcardJoinNibbles(p[1], p[2]);
        if (utf8 && byte > 127) break;
        PutDecoded(byte, utf8, data);
        next = p + 3;
      }
    } else if (*p == kCr || *p == kLf) {
      if (p == rest.End) break;
      VcardStreamTake(data->Stream, p + 1);
      return true;
    } else if (*p < 128) {
      VcardPutChar(*p, data);
      next = p + 1;
    }
  }
  VcardStreamTake(data->Stream, p);
  return false;
}

// Raw bytes to the end of a quoted-printable value.
void PutQpText(bool utf8, VcardData *data) {
  while (data->AtEof != 1 && !PutQpInBuffer(utf8, data)) {
    auto c = static_cast<uint8_t>(VcardStreamGetByte(data->Stream));
    if (c == kCr || c == kLf || c == kEnd) return;
    if (c == '=') {
      VcardDecodeQp(&c, data->Stream, &data->AtEof);
      PutDecoded(c, utf8, data);
    } else {
      PutByte(c, utf8, data);
    }
  }
}

}  // namespace

void VcardPutValue(VcardData *data) {
  PutIndent(data);
  const int32_t set = VcardCharsetId(data);
  SoSetCharset(static_cast<uint32_t>(set), data);
  PutLineBehindBlanks(IsUtf8(set), data);
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
  PutLine(IsUtf8(set), data);
  VcardRestoreCharset(set, data);
  SoEmitSpecial(SoSpecialLineBreak, data);
  return 1;
}

void VcardPutPlainLine(VcardData *data) { PutLine(false, data); }

void VcardPutTypes(const VcardData *data) {
  const int16_t *const flags = data->Types.Flag;
  if (flags[TypeAny] == 0) {
    SoEmitSpecial(SoSpecialLineBreak, data);
    return;
  }
  const auto putLabel = [data](int place) {
    SoEmitResourceString(VcardInit.TypeLabelIds[static_cast<size_t>(place)], data);
    SoEmitSpecial(SoSpecialSeparator, data);
  };
  VcardPutString(kTypesBegin, 0, data);
  for (int first = 0; first <= kLastInRow; first += 8) {
    // Eight flags a step, of which few are set. A flag that is has one byte that isn't zero.
    uint32_t bits = BitsOf(LoadBytes(flags + first) != 0);
    for (; bits != 0; bits &= bits - 1) {
      const int type = first + std::countr_zero(bits) / 2;
      if (type <= kLastInRow) putLabel(type);
    }
  }
  if (flags[kX509] == 1) putLabel(kLastInRow + 1);
  if (flags[kPgp] == 1) putLabel(kLastInRow + 2);
  if (flags[TypeExtension] == 1) {
    VcardPutString(data->TypeExt, 0, data);
    SoEmitSpecial(SoSpecialSeparator, data);
  }
  VcardPutString(kTypesEnd, 1, data);
}

// The slow ways read a value character by character, through VcardGetChar or, quoted-printable
// ones, the raw read. The fast ways take what lies in the buffer up to a character that isn't
// theirs: TakeFieldInBuffer for VcardReadField, and the search in VcardSkipValueQp.

#include "vcrd/parser/value_readers.h"

#include <algorithm>

#include "vcrd/input/logical_reader.h"
#include "vcrd/input/quoted_printable.h"
#include "vcrd/parser/token_text.h"

namespace {

constexpr size_t kFieldRoom = kTextSize - 1;

enum class FieldEnd { Field, Value };

uint8_t GetByte(VcardData *data) { return static_cast<uint8_t>(VcardStreamGetByte(data->Stream)); }

uint8_t DecodeQp(VcardData *data) {
  uint8_t byte;
  VcardDecodeQp(&byte, data->Stream, &data->AtEof);
  return byte;
}

// The rest of a field that is full. A line end counts here even when it was written as an escape.
FieldEnd DropRestOfFieldQp(VcardData *data) {
  for (;;) {
    const uint8_t c = GetByte(data);
    switch (c) {
      case kCr:
      case kLf:
        return FieldEnd::Value;
      case kEnd:
        data->AtEof = 1;
        return FieldEnd::Value;
      case ';':
        return FieldEnd::Field;
      case '=': {
        const uint8_t decoded = DecodeQp(data);
        if (decoded == kCr || decoded == kLf) return FieldEnd::Value;
        break;
      }
      default:
        break;
    }
  }
}

FieldEnd ReadFieldQp(VcardText &value, VcardData *data) {
  size_t length = 0;
  FieldEnd end;
  for (;;) {
    if (length == kFieldRoom) {
      end = DropRestOfFieldQp(data);
      break;
    }
    uint8_t c = GetByte(data);
    if (c == kCr || c == kLf) {
      end = FieldEnd::Value;
      break;
    }
    if (c == kEnd) {  // a real byte 0xFF too
      data->AtEof = 1;
      end = FieldEnd::Value;
      break;
    }
    if (c == ';') {
      end = FieldEnd::Field;
      break;
    }
    if (c == '=') {
      c = DecodeQp(data);
      if (c == kCr) continue;
    }
    value[length++] = static_cast<char>(c);
  }
  value[length] = '\0';
  return end;
}

void VcardSkipValueQp(VcardData *data) {
  const auto isSpecial = [](ByteVector b) {
    return IsByte(b, '\r') | IsByte(b, '\n') | IsByte(b, '=');
  };
  VcardStream *stream = data->Stream;
  for (;;) {
    // The fast way over escapes: two bytes that aren't looked at, behind an equals sign that isn't
    // a soft line break.
    const VcardStretch rest = VcardStreamStretch(stream);
    const uint8_t *p = FindByte(isSpecial, rest.Begin);
    while (*p == '=' && rest.End - p >= 3 && p[1] != kCr && p[1] != kLf) {
      p = FindByte(isSpecial, p + 3);
    }
    VcardStreamTake(stream, p);
    // A real byte 0xFF doesn't end the value here, and the end of the input doesn't set AtEof.
    const int32_t r = VcardStreamGetByte(stream);
    if (r == kCr || r == kLf || r == -1) return;
    if (r == '=') DecodeQp(data);
  }
}

// Text of a VERSION value, cut at 255 characters.
struct CollectedText {
  VcardText Text;
  size_t Length = 0;

  void Add(uint8_t byte) {
    if (Length < kFieldRoom) Text[Length++] = static_cast<char>(byte);
  }
  bool Is(const char *wanted) const {
    return Length == std::strlen(wanted) && std::memcmp(Text, wanted, Length) == 0;
  }
};

// A field that is being read: the text that it has so far.
struct Field {
  VcardText &Text;
  size_t Length = 0;

  // Leading blanks go, and what is too much.
  void Add(uint8_t byte) {
    if (Length == 0 && (byte == kSpace || byte == kTab)) return;
    if (Length < kFieldRoom) Text[Length++] = static_cast<char>(byte);
  }
  // The bytes from `begin`, which sixteen can be read from.
  void Add(const uint8_t *begin, const uint8_t *end) {
    if (Length > 0) {
      const size_t taken = std::min(static_cast<size_t>(end - begin), kFieldRoom - Length);
      std::memcpy(Text + Length, begin, taken);
      Length += taken;
      return;
    }
    while (begin != end && (*begin == kSpace || *begin == kTab)) ++begin;
    const auto length = static_cast<size_t>(end - begin);
    VcardTokenText{reinterpret_cast<const char *>(begin), length}.CopyTo(Text);
    Length = std::min(length, kFieldRoom);
  }
};

constexpr int32_t kFieldGoesOn = -1;

// The fast way of VcardReadField: what of the field lies in the buffer, with its folds. Answers
// what VcardReadField answers, or kFieldGoesOn in front of a character that is left to
// VcardGetChar.
int32_t TakeFieldInBuffer(Field *field, VcardData *data) {
  const auto isSpecial = [](ByteVector b) {
    return IsByte(b, '\r') | IsByte(b, '\n') | IsByte(b, ';') | IsByte(b, '\\');
  };
  VcardStream *stream = data->Stream;
  if (data->HasPushback != 0) return kFieldGoesOn;
  const VcardStretch rest = VcardStreamStretch(stream);
  for (const uint8_t *p = rest.Begin;;) {
    const uint8_t *const begin = p;
    p = FindByte(isSpecial, p);
    field->Add(begin, p);
    if (*p == ';') {
      VcardStreamTake(stream, p + 1);
      return 0;
    }
    if (*p != kBackslash) {
      const VcardLineEndAt lineEnd = VcardLookAtLineEnd(p, rest.End, data);
      if (lineEnd.Kind == VcardLineEnd::End) {
        VcardTakeLineEnd(lineEnd.Next, data);
        return 1;
      }
      p = lineEnd.Next;
      if (lineEnd.Kind == VcardLineEnd::Fold) continue;
    }
    VcardStreamTake(stream, p);
    return kFieldGoesOn;
  }
}

}  // namespace

int32_t VcardReadField(int32_t index, VcardData *data) {
  data->HasFields = 1;
  Field field{data->Value[index]};
  int32_t result;
  while ((result = TakeFieldInBuffer(&field, data)) == kFieldGoesOn) {
    uint8_t c;
    result = VcardGetChar(&c, data);
    if (result == 1 || c == ';') break;
    field.Add(c);
  }
  field.Text[field.Length] = '\0';
  return result;
}

void VcardReadFields(VcardData *data) {
  data->HasFields = 1;
  for (VcardText &value : data->Value) value[0] = '\0';
  for (int32_t i = 0; i < kFieldCount; ++i) {
    const bool ended = data->Encoding == EncodingQuotedPrintable
                           ? ReadFieldQp(data->Value[i], data) == FieldEnd::Value
                           : VcardReadField(i, data) == 1;
    if (ended) return;
  }
  VcardSkipValue(data);  // more fields than there are places
}

void VcardSkipValue(VcardData *data) {
  if (data->Encoding == EncodingQuotedPrintable) {
    VcardSkipValueQp(data);
  } else {
    VcardSkipLine(data);
  }
}

int16_t VcardReadVersion(VcardData *data) {
  CollectedText text;
  if (data->Encoding == EncodingQuotedPrintable) {
    for (;;) {
      const int32_t r = VcardStreamGetByte(data->Stream);
      if (r == kCr || r == kLf || r == -1) break;
      const uint8_t c = r == '=' ? DecodeQp(data) : static_cast<uint8_t>(r);
      if (r == '=' && c == kCr) continue;
      text.Add(c);
    }
  } else {
    uint8_t c;
    while (VcardGetChar(&c, data) == 0) text.Add(c);
  }
  if (text.Is("2.0")) return 2;
  if (text.Is("3.0")) return 3;
  return 1;  // "2.1", and whatever else stands there
}

#include "vcrd/parser/value_readers.h"

#include "vcrd/input/logical_reader.h"
#include "vcrd/input/quoted_printable.h"

namespace {

constexpr ByteSet kFieldSpecial = {kCr, kLf, kBackslash, ';'};
constexpr ByteSet kQpSpecial = {kCr, kLf, '='};
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
  VcardStream *stream = data->Stream;
  for (;;) {
    const VcardStretch stretch = VcardStreamStretch(stream);
    VcardStreamTake(stream, FindByteOf(kQpSpecial, stretch.Begin, stretch.End));
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

}  // namespace

int32_t VcardReadField(int32_t index, VcardData *data) {
  char *value = data->Value[index];
  size_t length = 0;
  uint8_t c;
  int32_t result;
  for (;;) {
    result = VcardGetChar(&c, data);
    if (result == 1 || c == ';') break;
    if (length == 0 && (c == kSpace || c == kTab)) continue;
    if (length < kFieldRoom) value[length++] = static_cast<char>(c);
    length += VcardMovePlainRun(kFieldSpecial, value + length, kFieldRoom - length, data);
  }
  value[length] = '\0';
  return result;
}

void VcardReadFields(VcardData *data) {
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

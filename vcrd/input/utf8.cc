#include "vcrd/input/utf8.h"

#include "vcrd/input/quoted_printable.h"

namespace {

uint8_t GetContinuation(VcardStream *stream, VcardData *data) {
  auto byte = static_cast<uint8_t>(VcardStreamGetByte(stream));
  if (byte == '=' && data->Encoding == EncodingQuotedPrintable) {
    VcardDecodeQp(&byte, stream, &data->AtEof);
  }
  return byte;
}

}  // namespace

int32_t VcardDecodeUtf8(uint16_t lead, VcardStream *stream, VcardData *data) {
  const auto first = static_cast<uint8_t>(lead);
  const int ones = VcardLeadingOnes(first);
  if (ones == 2) return VcardJoinUtf8(first, GetContinuation(stream, data));
  if (ones == 3) {
    const uint8_t second = GetContinuation(stream, data);
    const uint8_t third = GetContinuation(stream, data);
    return static_cast<int16_t>(VcardJoinUtf8(first, second, third));
  }
  for (int left = ones - 1; left > 0; --left) VcardStreamGetByte(stream);
  return -1;
}

#include "vcrd/output/characters.h"

#include "vcrd/input/utf8.h"

namespace {

// The code of the UTF-8 form at `text`, which isn't at its NUL; moves behind the form. The rules
// are those of the stream's decoder. A form that the NUL cuts short is one unknown character, and
// the NUL stays unpassed.
uint16_t TakeUtf8(const char **text) {
  const auto *bytes = reinterpret_cast<const uint8_t *>(*text);
  const int ones = VcardLeadingOnes(bytes[0]);
  const size_t wanted = ones > 1 ? static_cast<size_t>(ones) : 1;
  const size_t taken = strnlen(*text, wanted);
  *text += taken;
  if (ones == 0) return bytes[0];
  if (taken < wanted) return 0xFFFF;
  if (ones == 2) return VcardJoinUtf8(bytes[0], bytes[1]);
  if (ones == 3) return VcardJoinUtf8(bytes[0], bytes[1], bytes[2]);
  return 0xFFFF;
}

}  // namespace

int32_t VcardCharsetId(const VcardData *data) {
  if (data->Charset[0] == '\0') return SoCharsetDefault;
  if (VcardSameText(data->Charset, "utf-8")) return SoCharsetUtf8;
  if (VcardSameText(data->Charset, "windows-1251")) return SoCharsetWindows1251;
  return SoCharsetDefault;
}

void VcardPutString(const char *text, int16_t trailingBreak, const VcardData *data) {
  const int32_t set = VcardCharsetId(data);
  SoSetCharset(static_cast<uint32_t>(set), data);
  while (*text != '\0') {
    if (*text == '\n') {
      VcardPutLineBreak(data);
      SoEmitSpecial(SoSpecialTab, data);
      SoEmitSpecial(SoSpecialTab, data);
      ++text;
    } else if (set == SoCharsetUtf8) {
      VcardPutChar(TakeUtf8(&text), data);
    } else {
      VcardPutChar(static_cast<uint8_t>(*text++), data);
    }
  }
  VcardRestoreCharset(set, data);
  if (trailingBreak == 1) VcardPutLineBreak(data);
}

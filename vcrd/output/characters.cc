#include "vcrd/output/characters.h"

#include "vcrd/input/byte_search.h"
#include "vcrd/input/utf8.h"

namespace {

// The code of the UTF-8 form at `text`, which begins with a byte above 127; moves behind the form.
// The rules are those of the stream's decoder. A form that the NUL cuts short is one unknown
// character, and the NUL stays unpassed.
uint16_t TakeUtf8(const char **text) {
  const auto *bytes = reinterpret_cast<const uint8_t *>(*text);
  const int ones = VcardLeadingOnes(bytes[0]);
  const auto wanted = static_cast<size_t>(ones);
  const size_t taken = strnlen(*text, wanted);
  *text += taken;
  if (taken < wanted) return 0xFFFF;
  if (ones == 2) return VcardJoinUtf8(bytes[0], bytes[1]);
  if (ones == 3) return VcardJoinUtf8(bytes[0], bytes[1], bytes[2]);
  return 0xFFFF;
}

template <size_t Size>
bool IsCharset(const VcardData *data, const char (&name)[Size]) {
  return std::memcmp(data->Charset, name, Size) == 0;  // with its NUL
}

}  // namespace

int32_t VcardCharsetId(const VcardData *data) {
  if (data->Charset[0] == '\0') return SoCharsetDefault;
  if (IsCharset(data, "utf-8")) return SoCharsetUtf8;
  if (IsCharset(data, "windows-1251")) return SoCharsetWindows1251;
  return SoCharsetDefault;
}

void VcardPutPaddedString(const char *text, int16_t trailingBreak, const VcardData *data) {
  const int32_t set = VcardCharsetId(data);
  SoSetCharset(static_cast<uint32_t>(set), data);
  const bool utf8 = set == SoCharsetUtf8;
  for (;;) {
    // Control characters end a run, though most of them go to the host like others.
    const auto *const begin = reinterpret_cast<const uint8_t *>(text);
    const uint8_t *const end = utf8 ? FindByte(IsControlOrHigh, begin) : FindByte(IsControl, begin);
    VcardEmitRun(begin, end, data);
    text = reinterpret_cast<const char *>(end);
    if (*text == '\0') break;
    if (*text == '\n') {
      VcardPutLineBreak(data);
      SoEmitSpecial(SoSpecialTab, data);
      SoEmitSpecial(SoSpecialTab, data);
      ++text;
    } else if (*end > 127) {
      VcardPutChar(TakeUtf8(&text), data);
    } else {
      VcardPutChar(*end, data);
      ++text;
    }
  }
  VcardRestoreCharset(set, data);
  if (trailingBreak == 1) VcardPutLineBreak(data);
}

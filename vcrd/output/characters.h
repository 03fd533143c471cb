// Character output: one code, and strings from memory, in the character set of `Charset`.
//
// Outside the emitters the host's set is always the default: whoever sets another one sets the
// default back before it returns, so labels and separators stand under it.

#ifndef PX_VCRD_OUTPUT_CHARACTERS_H
#define PX_VCRD_OUTPUT_CHARACTERS_H

#include <cstdint>

#include "vcrd/frame/host_routines.h"
#include "vcrd/frame/vcard_data.h"

inline void VcardPutLineBreak(const VcardData *data) { SoEmitSpecial(SoSpecialLineBreak, data); }

// One character; a tab and a newline become special items.
inline void VcardPutChar(uint16_t code, const VcardData *data) {
  if (code == '\t') {
    SoEmitSpecial(SoSpecialTab, data);
  } else if (code == '\n') {
    VcardPutLineBreak(data);
  } else {
    SoEmitChar(code, data);
  }
}

// The host's code for `Charset`. Only "utf-8" and "windows-1251", so written, are known.
int32_t VcardCharsetId(const VcardData *data);

// Behind an emission under `set`: the host is back at the default.
inline void VcardRestoreCharset(int32_t set, const VcardData *data) {
  if (set != SoCharsetDefault) SoSetCharset(SoCharsetDefault, data);
}

// A short string that isn't a field of the record, for VcardPutString.
using VcardLiteral = char[32];

// The string in a field or a literal, and a line break behind it when `trailingBreak` is 1. A
// newline in it goes on at the two-tab indent of a listed value.
void VcardPutPaddedString(const char *text, int16_t trailingBreak, const VcardData *data);
template <size_t Size>
inline void VcardPutString(const char (&text)[Size], int16_t trailingBreak, const VcardData *data) {
  static_assert(Size == sizeof(VcardText) || Size == sizeof(VcardLiteral));
  VcardPutPaddedString(text, trailingBreak, data);
}

#endif

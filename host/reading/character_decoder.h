// From the codes of SoEmitChar to UTF-8.
//
// A code means what the last SoSetCharset says. Codes of the default set are the bytes of a file
// that named no set: they are read as UTF-8 where they are valid UTF-8 and as windows-1252 where
// they are not.

#ifndef PX_HOST_READING_CHARACTER_DECODER_H
#define PX_HOST_READING_CHARACTER_DECODER_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "px/output_routines.h"

namespace px {

class CharacterDecoder {
 public:
  // Does what SoSetCharset says, for the runs that follow. A set that isn't known counts as the
  // default set.
  void setCharset(uint32_t set) { set_ = set; }

  // Decodes a run of codes, or where `more` of it follows, a part: up to three of its bytes that
  // may begin a UTF-8 sequence then wait for the next one. Answers valid UTF-8, which stays until the
  // next call; a code that is no character becomes U+FFFD. Nothing is left out, control characters
  // neither: see appendPrintable.
  std::string_view decode(std::span<const uint16_t> codes, bool more = false);

 private:
  bool isDefault() const { return set_ != SoCharsetUtf8 && set_ != SoCharsetWindows1251; }
  char *put(uint16_t code, char *to);
  char *putDefault(uint8_t byte, char *to);
  char *giveUpHeld(char *to);

  uint32_t set_ = SoCharsetDefault;
  uint8_t held_[4] = {};  // the beginning of a UTF-8 sequence that is valid so far
  uint32_t heldCount_ = 0;
  std::string utf8_;  // room for what is answered
};

}  // namespace px

#endif

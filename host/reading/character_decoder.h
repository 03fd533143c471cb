// From the codes of SoEmitChar to UTF-8.
//
// A code means what the last SoSetCharset says. Codes of the default set are the bytes of a file
// that named no set: they are read as UTF-8 where they are valid UTF-8 and as windows-1252 where
// they are not. The bytes come one a call, so up to three that may begin a UTF-8 sequence wait for
// what follows them.

#ifndef PX_HOST_READING_CHARACTER_DECODER_H
#define PX_HOST_READING_CHARACTER_DECODER_H

#include <cstdint>
#include <span>
#include <string>

#include "px/output_routines.h"

namespace px {

// Collects characters. What it appends is valid UTF-8 at every moment; a code that is no character
// becomes U+FFFD. Nothing is left out, control characters neither: see appendPrintable.
class CharacterDecoder {
 public:
  // Does what SoSetCharset says, for the codes that follow. A set that isn't known counts as the
  // default set.
  void setCharset(uint32_t set, std::string *utf8) {
    finish(utf8);
    set_ = set;
  }

  // Appends the character, or holds its byte back.
  void put(uint16_t code, std::string *utf8);

  // Appends several, quickly where they are ASCII.
  void put(std::span<const uint16_t> codes, std::string *utf8);

  // Ends a run of characters: appends what was held back. To be called before anything but a
  // character is appended to the same text.
  void finish(std::string *utf8) {
    if (heldCount_ > 0) giveUpHeld(utf8);
  }

 private:
  void putDefault(uint8_t byte, std::string *utf8);
  void giveUpHeld(std::string *utf8);

  uint32_t set_ = SoCharsetDefault;
  uint8_t held_[4] = {};  // the beginning of a UTF-8 sequence that is valid so far
  uint32_t heldCount_ = 0;
};

}  // namespace px

#endif

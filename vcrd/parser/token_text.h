// The text of a token where it stands.

#ifndef PX_VCRD_PARSER_TOKEN_TEXT_H
#define PX_VCRD_PARSER_TOKEN_TEXT_H

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "vcrd/frame/text.h"
#include "vcrd/input/byte_search.h"

// A stretch without a NUL. Sixteen bytes can be read from each of its bytes, so short texts are
// looked up and copied without a look at each character.
struct VcardTokenText {
  const char *Begin;
  size_t Length;

  // Whether it begins like the name of an extension, "X-".
  bool IsExtension() const {
    return Length >= 2 && (Begin[0] == 'X' || Begin[0] == 'x') && Begin[1] == '-';
  }

  // Copies it, cut at 255 characters. What stands behind the NUL is of no use to anybody. A short
  // text is stored with its NUL at once, so that a look-up right behind needn't wait for two
  // stores.
  void CopyTo(VcardText &to) const {
    if (Length < sizeof(ByteVector)) {
      const ByteVector bytes = KeepBytes(LoadBytes(Begin), Length);
      std::memcpy(to, &bytes, sizeof bytes);
      return;
    }
    const size_t length = std::min(Length, kTextSize - 1);
    for (size_t i = 0; i < length; i += 16) std::memcpy(to + i, Begin + i, 16);
    to[length] = '\0';
  }
};

// A token's text that the bytes behind aren't known of, copied to where they are.
class VcardPaddedText {
 public:
  explicit VcardPaddedText(const char *text) : length_(strnlen(text, kTextSize - 1)) {
    std::memcpy(text_, text, length_);
  }
  VcardTokenText Text() const { return {text_, length_}; }

 private:
  char text_[kTextSize + 16];
  size_t length_;
};

#endif

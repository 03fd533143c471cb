// From bytes in any character set to UTF-8, and the guess at a set that nobody named.

#ifndef PX_HOST_SOURCE_TEXT_DECODER_H
#define PX_HOST_SOURCE_TEXT_DECODER_H

#include <iconv.h>

#include <memory>
#include <string>
#include <string_view>

struct uchardet;

namespace px {

// Whether `bytes` are valid UTF-8 without a NUL; `*open` bytes at their end may be the beginning of
// a character.
bool isUtf8(std::string_view bytes, size_t *open);

// `bytes`, with U+FFFD for those that are no UTF-8 and for NULs.
std::string asUtf8(std::string_view bytes);

// Decodes one text after the other.
class TextDecoder {
 public:
  // Begins a text in the set that iconv knows by this name, in any case of letters. Answers false,
  // and begins nothing, when it knows none.
  bool begin(const std::string &set);
  void beginUtf8() { converter_ = nullptr; }
  bool readsUtf8() const { return converter_ == nullptr; }

  // Appends what the bytes say, in valid UTF-8, with U+FFFD for bytes that are no text in the set,
  // and for NULs, which no text of a card can hold. A character that is cut off waits for the next
  // bytes.
  void put(std::string_view bytes, std::string *utf8);

  // Ends the text. Answers whether all its bytes were text.
  bool finish(std::string *utf8);

 private:
  struct Close {
    using pointer = iconv_t;
    void operator()(iconv_t converter) const { iconv_close(converter); }
  };
  void putUtf8(std::string_view bytes, std::string *utf8);
  void convert(std::string_view bytes, std::string *utf8);
  void replace(std::string *utf8);

  std::unique_ptr<void, Close> opened_;
  std::string openedSet_;
  iconv_t converter_ = nullptr;  // of the current text; null: it is UTF-8
  std::string held_;             // the beginning of a character
  bool good_ = true;
};

// Guesses from some texts of one file what set they are all in.
class CharsetGuess {
 public:
  CharsetGuess();
  void put(std::string_view bytes);

  // A name that TextDecoder takes; windows-1252 where the texts tell nothing.
  std::string finish();

 private:
  struct Delete {
    void operator()(uchardet *detector) const;
  };
  std::unique_ptr<uchardet, Delete> detector_;
};

}  // namespace px

#endif

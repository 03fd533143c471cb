// The text of a value as a person means it: escapes undone, every line end one LF, and the fields
// of a structured value divided by FieldDivider.

#ifndef PX_HOST_SOURCE_VALUE_TEXT_H
#define PX_HOST_SOURCE_VALUE_TEXT_H

#include <string>
#include <string_view>

namespace px {

// A control character that stands between fields; where the text itself has one, it goes.
constexpr char FieldDivider = '\x1F';

// How many bytes at the head of a text mean what they are, or divide fields.
size_t plainLength(std::string_view utf8);

class ValueText {
 public:
  // `escapes`: \n \, \; and \\ are escapes; without them \; alone is one, in a structured value.
  // `separator` stands between the fields; 0: the value isn't structured.
  ValueText(bool escapes, char separator) : escapes_(escapes), separator_(separator) {}

  // Appends what a piece of UTF-8 means.
  void put(std::string_view utf8, std::string *text);
  // Appends what waits for a further piece.
  void finish(std::string *text);

 private:
  void putOne(char c, std::string *text);

  bool escapes_;
  char separator_;
  bool backslash_ = false;       // one has been met and waits
  bool carriageReturn_ = false;  // likewise; its LF has been written
};

}  // namespace px

#endif

#include "vcrd/parser/scanner.h"

#include "vcrd/input/logical_reader.h"

namespace {

struct TokenText {
  char *Text;
  size_t Length = 0;

  void Add(uint8_t byte) {
    if (Length < kTextSize - 1) Text[Length++] = static_cast<char>(byte);
  }
  VcardToken End(VcardToken token) {
    Text[Length] = '\0';
    return token;
  }
};

}  // namespace

VcardToken VcardGetToken(VcardText &text, VcardData *data) {
  if (data->AtEof == 1) return TokenEof;
  VcardStream *stream = data->Stream;
  data->TokenPos = VcardStreamPosition(stream) - (data->HasPushback != 0 ? 1U : 0U);
  TokenText token{text};
  const int32_t state = data->ParseState;
  if (state == StateValue) return token.End(TokenEnd);

  uint8_t c = VcardSkipSpace(data);
  for (;;) {
    switch (c) {
      case kCr:
      case kLf:
        return token.End(TokenEnd);
      case kEnd:
        // A real byte 0xFF ends the input here too; the text so far is lost either way.
        return token.End(TokenEof);
      case ':':
        return token.End(TokenColon);
      case ';':
        return token.End(TokenSemicolon);
      case '.':
        if (state == StateName) return token.End(TokenPeriod);
        token.Add(c);
        break;
      case '=':
        if (state == StateParm) return token.End(TokenEquals);
        token.Add(c);
        break;
      case kSpace:
      case kTab:
        break;
      default:
        token.Add(c);
        break;
    }
    // The character alone decides: a line end inside an escape ends the token like a real one.
    VcardGetChar(&c, data);
  }
}

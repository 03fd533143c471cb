#include "vcrd/output/card_boundaries.h"

#include "vcrd/frame/host_routines.h"
#include "vcrd/input/logical_reader.h"
#include "vcrd/parser/scanner.h"
#include "vcrd/parser/value_readers.h"

namespace {

// Whether the next five bytes end the word of which `first` has been taken. They are read without
// a test for the end of the input.
bool ReadsBegin(uint8_t first, VcardStream *stream) {
  VcardText word;
  word[0] = static_cast<char>(first);
  for (int i = 1; i < 6; ++i) word[i] = static_cast<char>(VcardStreamGetByte(stream));
  word[6] = '\0';
  VcardLowerText(word, word);
  return VcardSameText(word, "begin:");
}

bool IsWord(const VcardText &text, const char *word) {
  VcardText lowered;
  VcardLowerText(lowered, text);
  return VcardSameText(lowered, word);
}

}  // namespace

void VcardFindNextCard(VcardData *data) {
  VcardStream *stream = data->Stream;
  const auto canBegin = [](ByteVector b) {
    return IsByte(b | uint8_t{0x20}, 'b') | ByteVector(b == 0xFF) | IsByte(b, '\r');
  };
  for (;;) {
    VcardStreamTake(stream, FindByte(canBegin, stream->Ptr));
    const auto c = static_cast<uint8_t>(VcardStreamGetByte(stream));
    if (c == kEnd) {  // a real byte 0xFF ends the search too
      data->AtEof = 1;
      return;
    }
    if (c != 'B' && c != 'b') continue;
    const uint32_t behind = VcardStreamPosition(stream);
    if (!ReadsBegin(c, stream)) {
      VcardStreamSeek(stream, behind);
      continue;
    }
    VcardStreamSeek(stream, behind - 1);
    SoEmitBreak(SoBreakSection, data);
    data->Finished = 1;
    return;
  }
}

void VcardSkipAgent(VcardData *data) {
  VcardSkipValue(data);
  VcardStream *stream = data->Stream;
  const int32_t parseState = data->ParseState;
  const uint32_t position = VcardStreamPosition(stream);
  const int16_t hasPushback = data->HasPushback;
  const uint8_t pushbackChar = data->PushbackChar;

  data->ParseState = StateName;
  VcardText text = "";
  VcardGetToken(text, data);
  if (!IsWord(text, "begin")) {
    VcardStreamSeek(stream, position);
    data->HasPushback = hasPushback;
    data->PushbackChar = pushbackChar;
    data->ParseState = parseState;
    return;
  }
  // Each token is followed by a skip of a value, also one that has used up its line: the line
  // behind such a token goes unseen, the first one behind BEGIN among them.
  int16_t depth = 1;
  do {
    const VcardToken token = VcardGetToken(text, data);
    if (token == TokenEof) {
      data->AtEof = 1;
      break;
    }
    if (token == TokenColon) {
      if (IsWord(text, "begin")) ++depth;
      if (IsWord(text, "end")) --depth;
    }
    VcardSkipValue(data);
  } while (depth != 0);
  data->ParseState = parseState;
}

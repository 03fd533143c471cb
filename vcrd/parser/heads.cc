// The heads of content lines, the fast way.
//
// What is done here token by token in the buffer is what VcardGetToken and the state tables do with
// the logical reader, and nothing else. The slow way finds out what each character means before it
// looks at the next, copies the token and calls the action of its cell. Here the bytes that can mean
// something are found sixteen at a step,
//
//   T E L ; W O R K ; V O I C E : + 1      a token is what stands between two of them,
//         ^         ^           ^          from where it stands it is looked up and copied
//
// and the cell's action and next state stand in the code. Left to the slow way is every token that
// isn't whole in the buffer, and any with an escape, a fold, a run of line ends or a byte that
// seldom stands in a head: it begins again in front of the token.

#include "vcrd/parser/heads.h"

#include "px/vcrd.h"
#include "vcrd/input/logical_reader.h"
#include "vcrd/parser/actions.h"
#include "vcrd/parser/vcard_init.h"

namespace {

// The bytes that can mean something in some state, or that the logical reader must see. With them
// all control characters, of which the NUL would end a text.
ByteVector IsSpecial(ByteVector b) {
  const ByteVector isColonOrSemicolon = IsByte(b | uint8_t{1}, ';');
  return ByteVector(b <= 0x20) | isColonOrSemicolon | IsByte(b, '.') | IsByte(b, '=') |
         IsByte(b, '\\') | ByteVector(b == 0xFF);
}
static_assert((':' | 1) == ';');

// The special bytes of the buffer, one behind the other.
class SpecialBytes {
 public:
  explicit SpecialBytes(const uint8_t *from) : step_(from), bits_(BitsOf(IsSpecial(LoadBytes(from)))) {}

  const uint8_t *Next() {
    while (bits_ == 0) {
      step_ += 16;
      bits_ = BitsOf(IsSpecial(LoadBytes(step_)));
    }
    const uint8_t *const found = step_ + std::countr_zero(bits_);
    bits_ &= bits_ - 1;
    return found;
  }

 private:
  const uint8_t *step_;
  uint32_t bits_;  // of the bytes at step_, without those that were answered
};

// The text of a token without its blanks, which count for nothing.
class TextWithoutBlanks {
 public:
  TextWithoutBlanks(const uint8_t *begin, const uint8_t *end) {
    for (const uint8_t *p = begin; p != end && length_ < kTextSize - 1; ++p) {
      if (*p != kSpace && *p != kTab) text_[length_++] = static_cast<char>(*p);
    }
  }
  VcardTokenText Text() const { return {text_, length_}; }

 private:
  char text_[kTextSize + 16];
  size_t length_ = 0;
};

// The actions of a token that ended in a period, a semicolon, an equals sign or a colon.
void Act(int32_t state, uint8_t delimiter, VcardTokenText text, VcardData *data) {
  switch (state) {
    case StateName:
      if (delimiter == '.') {
        VcardAddGroup(text, data);
      } else {
        VcardSetPropName(text, data);
      }
      break;
    case StateParm:
      if (delimiter == '=') {
        VcardSetParmId(text, data);
      } else {
        VcardSetParmValue(text, data);
      }
      break;
    default:
      VcardSetIdParmValue(text, data);
      break;
  }
}

// Where the stream stands when a pushed-back byte is put back, or null when the byte that was pushed
// back isn't the one before.
const uint8_t *BeginOfToken(const VcardData *data) {
  const VcardStream *stream = data->Stream;
  if (stream->Remaining <= 0) return nullptr;
  if (data->HasPushback == 0) return stream->Ptr;
  if (stream->Ptr == stream->Buffer || stream->Ptr[-1] != data->PushbackChar) return nullptr;
  return stream->Ptr - 1;
}

// Takes a head up to its colon, or up to the token that is left to the slow way. Answers whether it
// is complete.
bool ReadHead(VcardData *data) {
  const uint8_t *token = BeginOfToken(data);
  if (token == nullptr) return false;
  VcardStream *const stream = data->Stream;
  const uint8_t *const end = stream->Ptr + stream->Remaining;
  const auto positionOf = [stream, base = VcardStreamPosition(stream)](const uint8_t *p) {
    return base + static_cast<uint32_t>(p - stream->Ptr);
  };
  int32_t state = data->ParseState;
  SpecialBytes special(token);
  bool complete = false;
  for (;;) {
    data->TokenPos = positionOf(token);
    const uint8_t *begin = token;
    const uint8_t *p = special.Next();
    for (; p == begin && p != end && VcardIsWhite(*p); p = special.Next()) ++begin;

    bool hasBlanks = false;
    while (*p == kSpace || *p == kTab || (*p == '.' && state != StateName) ||
           (*p == '=' && state != StateParm) || (*p == kBackslash && data->Version == 1)) {
      hasBlanks |= *p <= kSpace;
      p = special.Next();
    }
    if (*p == kCr || *p == kLf) {
      // The line has ended before its colon: the text is lost.
      if (p == begin) break;
      const bool crLf = p[0] == kCr && p[1] == kLf;
      const VcardLineEndAt lineEnd = VcardLookAtLineEnd(p, end, data);
      if (lineEnd.Kind != VcardLineEnd::End) break;
      if (crLf) special.Next();
      token = lineEnd.Next;
      state = StateName;
      continue;
    }
    if (*p != ':' && *p != ';' && *p != '.' && *p != '=') break;
    if (hasBlanks) {
      Act(state, *p, TextWithoutBlanks(begin, p).Text(), data);
    } else {
      Act(state, *p, {reinterpret_cast<const char *>(begin), static_cast<size_t>(p - begin)}, data);
    }
    token = p + 1;
    if (*p == ':') {
      complete = true;
      break;
    }
    if (*p == '=') state = StateParmValue;
    if (*p == ';') state = StateParm;
  }
  data->ParseState = complete ? StateValue : state;
  data->HasPushback = 0;
  data->TokenPos = positionOf(token);
  VcardStreamTake(stream, token);
  return complete;
}

}  // namespace

bool VcardReadHeads(VcardData *data) {
  while (data->AtEof != 1 && data->ParseState != StateValue && ReadHead(data)) {
    TavoVcardDisplayProp("", data);
    data->ParseState = StateName;
    if (data->StopRequested != 0 || data->Finished != 0) return true;
  }
  return false;
}

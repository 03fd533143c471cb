// The heads of content lines, the fast way.
//
// What is done here token by token in the buffer is what VcardGetToken and the state tables do with
// the logical reader, and nothing else. The slow way finds out what each character means before it
// looks at the next, copies the token and calls the action of its cell. Here the bytes that can
// mean something are found sixteen at a step,
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
  explicit SpecialBytes(const uint8_t *from)
      : step_(from), bits_(BitsOf(IsSpecial(LoadBytes(from)))) {}

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

// Room for the text of a token without its blanks, which count for nothing.
class TextWithoutBlanks {
 public:
  VcardTokenText Of(const uint8_t *begin, const uint8_t *end) {
    size_t length = 0;
    for (const uint8_t *p = begin; p != end && length < kTextSize - 1; ++p) {
      if (*p != kSpace && *p != kTab) text_[length++] = static_cast<char>(*p);
    }
    return {text_, length};
  }

 private:
  char text_[kTextSize + 16];
};

// What a special byte means: goes on, counts for nothing, or ends the token with an action.
enum class Meaning : uint8_t {
  Slow,  // for VcardGetToken
  Text,
  Backslash,  // text of version 1
  Blank,
  LineEnd,
  Group,
  Name,
  ParmId,
  Parm,
  IdParm
};

// The row of a state; what isn't named is left to the slow way.
struct MeaningRow {
  Meaning Of[256] = {};

  consteval MeaningRow(Meaning period, Meaning equals, Meaning semicolonAndColon) {
    Of[kCr] = Of[kLf] = Meaning::LineEnd;
    Of[kSpace] = Of[kTab] = Meaning::Blank;
    Of[kBackslash] = Meaning::Backslash;
    Of[uint8_t{'.'}] = period;
    Of[uint8_t{'='}] = equals;
    Of[uint8_t{';'}] = Of[uint8_t{':'}] = semicolonAndColon;
  }
};

constexpr MeaningRow kMeaning[] = {
    {Meaning::Group, Meaning::Text, Meaning::Name},   // StateName
    {Meaning::Text, Meaning::ParmId, Meaning::Parm},  // StateParm
    {Meaning::Text, Meaning::Text, Meaning::IdParm}   // StateParmValue
};

// The state behind a token that the byte has ended; a period leaves it at StateName.
int32_t StateBehind(uint8_t delimiter) {
  if (delimiter == ':') return StateValue;
  if (delimiter == ';') return StateParm;
  return delimiter == '=' ? StateParmValue : StateName;
}

// Where the stream stands when a pushed-back byte is put back, or null when the byte that was
// pushed back isn't the one before, or nothing is left in the buffer.
const uint8_t *BeginOfToken(const VcardData *data) {
  const VcardStream *stream = data->Stream;
  if (stream->Remaining <= 0) return nullptr;
  if (data->HasPushback == 0) return stream->Ptr;
  if (stream->Ptr == stream->Buffer || stream->Ptr[-1] != data->PushbackChar) return nullptr;
  return stream->Ptr - 1;
}

// The token that is being read.
struct Token {
  const uint8_t *Start;  // where it began
  const uint8_t *Begin;  // behind the white space at its head
  bool HasBlanks = false;

  explicit Token(const uint8_t *start) : Start(start), Begin(start) {}
};

// Takes a head up to its colon, or up to the token that is left to the slow way. Answers whether it
// is complete.
bool ReadHead(VcardData *data) {
  const uint8_t *const start = BeginOfToken(data);
  if (start == nullptr) return false;
  VcardStream *const stream = data->Stream;
  const uint8_t *const end = stream->Ptr + stream->Remaining;
  Token token(start);
  SpecialBytes special(start);
  TextWithoutBlanks withoutBlanks;
  const uint8_t *p = start;
  const auto text = [&token, &p, &withoutBlanks] {
    if (token.HasBlanks) return withoutBlanks.Of(token.Begin, p);
    return VcardTokenText{reinterpret_cast<const char *>(token.Begin),
                          static_cast<size_t>(p - token.Begin)};
  };
  const auto position = [stream, &token] {
    return VcardStreamPosition(stream) + static_cast<uint32_t>(token.Start - stream->Ptr);
  };
  int32_t state = data->ParseState;
  bool goesOn = true;
  while (goesOn) {
    p = special.Next();
    switch (kMeaning[state].Of[*p]) {
      case Meaning::Text:
        continue;
      case Meaning::Backslash:
        goesOn = data->Version == 1;
        continue;
      case Meaning::Blank:
        if (p == token.Begin) {
          ++token.Begin;
        } else {
          token.HasBlanks = true;
        }
        continue;
      case Meaning::LineEnd: {
        if (p == token.Begin) {
          ++token.Begin;
          goesOn = p != end;
          continue;
        }
        // The line has ended before its colon: the text is lost.
        const VcardLineEndAt lineEnd = VcardLookAtLineEnd(p, end, data);
        goesOn = lineEnd.Kind == VcardLineEnd::End;
        if (!goesOn) continue;
        if (lineEnd.Next == p + 2) special.Next();
        token = Token(lineEnd.Next);
        state = StateName;
        continue;
      }
      case Meaning::Group:
        VcardAddGroup(text(), data);
        break;
      case Meaning::Name:
        VcardSetPropName(text(), data);
        break;
      case Meaning::ParmId:
        data->TokenPos = position();
        VcardSetParmId(text(), data);
        break;
      case Meaning::Parm:
        data->TokenPos = position();
        VcardSetParmValue(text(), data);
        break;
      case Meaning::IdParm:
        VcardSetIdParmValue(text(), data);
        break;
      case Meaning::Slow:
        goesOn = false;
        continue;
    }
    state = StateBehind(*p);
    token = Token(p + 1);
    goesOn = state != StateValue;
  }
  data->ParseState = state;
  data->HasPushback = 0;
  data->TokenPos = position();
  VcardStreamTake(stream, token.Start);
  return state == StateValue;
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

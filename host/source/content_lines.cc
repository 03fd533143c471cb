#include "host/source/content_lines.h"

#include <algorithm>
#include <optional>

#include "host/source/ascii_case.h"
#include "host/source/byte_search.h"
#include "host/source/line_breaks.h"
#include "host/source/value_bytes.h"

namespace px {
namespace {

bool isBlank(int c) { return c == ' ' || c == '\t'; }

// Behind a name that has no group and no blanks there is a colon or a semicolon.
ByteVector endsPlainName(ByteVector b) {
  return isByte(b, ':') | isByte(b, ';') | isByte(b, '.') | isByte(b, '"') | isByte(b, ' ') |
         isByte(b, '\t');
}

// What decides in a head what belongs to what.
ByteVector hasMeaning(ByteVector b) { return isByte(b, ':') | isByte(b, ';') | isByte(b, '"'); }

// Where the parameter that begins at `from` ends. Between quotes a semicolon is text.
size_t parameterEnd(std::string_view head, size_t from) {
  for (size_t at = from;; ++at) {
    at = head.find_first_of(";\"", at);
    if (at == head.npos) return head.size();
    if (head[at] == ';') return at;
    const size_t closing = head.find('"', at + 1);
    if (closing != head.npos) at = closing;
  }
}

// The head of a line, of which no more is kept than it may have.
class KeptHead {
 public:
  explicit KeptHead(std::string *text) : text_(*text) { text_.clear(); }

  void put(std::string_view text) {
    if (leftOut_) return;
    const size_t fits = std::min(text.size(), room_ - text_.size());
    text_.append(text, 0, fits);
    if (fits < text.size()) cut();
  }
  void putQuote() {
    if (leftOut_) return;
    if (text_.size() == room_) return cut();
    text_ += '"';
    isOpen_ = !isOpen_;
  }
  // Another one, whose semicolon comes next.
  void beginParameter() {
    leftOut_ = false;
    parameter_ = text_.size();
  }

  bool isCut() const { return isCut_; }

 private:
  // The first parameter that goes too far is cut between characters, and its quote closed. Others
  // behind it are left out, unless they have room.
  void cut() {
    if (isCut_) {
      text_.resize(parameter_);
    } else {
      while (!text_.empty() && (text_.back() & 0xC0) == 0x80) text_.pop_back();
      if (!text_.empty() && (text_.back() & 0x80) != 0) text_.pop_back();
      if (isOpen_) text_ += '"';
      room_ = text_.size() + ContentLines::RoomBehindCut;
    }
    isOpen_ = false;
    leftOut_ = isCut_ = true;
  }

  std::string &text_;
  size_t room_ = ContentLines::LongestHead;
  size_t parameter_ = 0;  // where the current one begins
  bool isOpen_ = false;   // a quote in the text
  bool leftOut_ = false;  // what comes
  bool isCut_ = false;
};

}  // namespace

bool splitParameters(std::string_view text, size_t most, std::vector<HeadParameter> *parameters) {
  for (size_t start = 0; start <= text.size();) {
    if (parameters->size() == most) return false;
    const size_t end = parameterEnd(text, start);
    const std::string_view parameter = text.substr(start, end - start);
    const size_t equals = parameter.find('=');
    if (equals == parameter.npos) {
      parameters->push_back({{}, parameter});
    } else {
      parameters->push_back({parameter.substr(0, equals), parameter.substr(equals + 1)});
    }
    start = end + 1;
  }
  return true;
}

bool ContentLines::next(ContentLine *line) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";  // files were put one behind the other
  for (;;) {
    const int next = source_->peek();
    if (next < 0) return false;
    if (isBlank(next)) {
      source_->skip(1);
    } else if (next == 0xEF && source_->lookAhead(mark.size()) == mark) {
      source_->skip(mark.size());
    } else if (!source_->takeLineEnd()) {
      break;
    }
  }
  line->start = source_->place();
  line->colon = true;
  line->cut = false;
  if (!nextInBuffer(line)) gather(line);
  return true;
}

// The usual head: whole in the buffer.
bool ContentLines::nextInBuffer(ContentLine *line) {
  bool ended;
  const std::string_view bytes = source_->readyInLine(&ended);
  const size_t nameEnd = lengthBefore(bytes, endsPlainName);
  size_t size = nameEnd;
  for (bool quoted = false;; ++size) {
    size += lengthBefore(bytes.substr(size),
                         [](ByteVector b) { return isByte(b, ':') | isByte(b, '"'); });
    if (size >= LongestHead || size == bytes.size()) return false;
    if (bytes[size] == '"') {
      quoted = !quoted;
    } else if (!quoted) {
      break;
    }
  }
  head_.assign(bytes, 0, size);
  source_->skip(size + 1);
  line->value = source_->place();
  split(nameEnd, line);
  return true;
}

bool ContentLines::passPlainLine() {
  bool ended;
  const std::string_view bytes = source_->readyInLine(&ended);
  const char first = bytes.empty() ? '\0' : capitalOf(bytes[0]);
  if (first < 'A' || first > 'Z') return false;
  const size_t size = lengthBefore(bytes, endsPlainName);
  if (size == bytes.size() || bytes[size] != ':' || size > LongestHead) return false;
  const std::string_view name = bytes.substr(0, size);
  for (const std::string_view other : {"BEGIN", "END", "AGENT"}) {
    if (equalsNoCase(name, other)) return false;
  }
  std::string_view line;
  if (source_->takeRestOfLine(&line)) return true;
  source_->skip(bytes.size());
  ValueBytes(source_, Transfer::Plain, FoldRule::DropsBlank).skip();
  return true;
}

// Any head, in one pass, at the end of which a quote may turn out to be none.
void ContentLines::gather(ContentLine *line) {
  struct Colon {
    Place behind;
    size_t head;  // of what is kept, the bytes before it
    bool cut;
  };
  std::optional<Colon> first, behindQuote;
  KeptHead kept(&head_);
  bool quoted = false;
  bool opensParameter = false;  // the last quote that opened
  char last = '\0';
  const auto end = [&](const Colon &colon) {
    source_->moveTo(colon.behind);
    line->value = colon.behind;
    line->cut = colon.cut;
    head_.resize(std::min(head_.size(), colon.head));
    split(lengthBefore(head_, endsPlainName), line);
  };
  for (;;) {
    bool ended;
    const std::string_view bytes = source_->readyInLine(&ended);
    const Place start = source_->place();
    for (size_t at = 0; at < bytes.size(); ++at) {
      const size_t plain = lengthBefore(bytes.substr(at), hasMeaning);
      kept.put(bytes.substr(at, plain));
      at += plain;
      if (plain > 0) last = bytes[at - 1];
      if (at == bytes.size()) break;
      const char c = bytes[at];
      if (c == '"') {
        quoted = !quoted;
        if (quoted) {
          opensParameter = last == '=' || last == ',';
          behindQuote.reset();
        }
        kept.putQuote();
      } else {
        if (c == ':') {
          const Place behind = {start.position + at + 1, start.line, start.column + at + 1};
          const Colon colon = {behind, head_.size(), kept.isCut()};
          if (!quoted) return end(colon);
          if (!first) first = colon;
          if (!behindQuote && opensParameter) behindQuote = colon;
        } else if (!quoted) {
          kept.beginParameter();
        }
        kept.put(bytes.substr(at, 1));
      }
      last = c;
    }
    source_->skip(bytes.size());
    if (!ended && source_->peek() >= 0) continue;
    line->end = source_->place();
    const bool unfinished = quoted || last == '=' || last == ';' || last == ',';
    if (takeFold(source_, unfinished ? Before::Unfinished : Before::Text) != Behind::More) break;
    if (rule_ == FoldRule::KeepsBlank) kept.put(" ");
  }
  if (quoted && behindQuote) return end(*behindQuote);
  if (first) return end(*first);
  line->colon = false;
}

// Divides head_, whose first byte that ends a plain name stands at `end`, or behind it all.
void ContentLines::split(size_t end, ContentLine *line) {
  const std::string_view head = head_;
  const bool plain = end == head.size() || head[end] == ';';
  if (!plain) end = std::min(head.find(';'), head.size());
  line->head = head;
  line->group = {};
  line->name = head.substr(0, end);
  line->parameters = head.substr(std::min(end + 1, head.size()));
  if (!plain) takeGroup(line);
}

// Takes the blanks out of the name of `line`, and the group in front of it.
void ContentLines::takeGroup(ContentLine *line) {
  std::string_view name = line->name;
  if (std::any_of(name.begin(), name.end(), isBlank)) {
    name_ = name;
    std::erase_if(name_, isBlank);
    name = name_;
  }
  const size_t period = name.rfind('.');
  line->group = period == name.npos ? std::string_view() : name.substr(0, period);
  line->name = period == name.npos ? name : name.substr(period + 1);
}

}  // namespace px

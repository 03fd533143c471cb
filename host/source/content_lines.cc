#include "host/source/content_lines.h"

#include <algorithm>

#include "host/source/ascii_case.h"
#include "host/source/byte_search.h"
#include "host/source/value_bytes.h"

namespace px {
namespace {

bool isBlank(int c) { return c == ' ' || c == '\t'; }

// Behind a name that has no group and no blanks there is a colon or a semicolon.
ByteVector endsPlainName(ByteVector b) {
  return isByte(b, ':') | isByte(b, ';') | isByte(b, '.') | isByte(b, '"') | isByte(b, ' ') |
         isByte(b, '\t');
}

// Where the parameter that begins at `from` ends. Between quotes a semicolon is text, when `guard`.
size_t parameterEnd(std::string_view head, size_t from, bool guard) {
  bool quoted = false;
  for (size_t at = from; at < head.size(); ++at) {
    if (head[at] == '"') quoted = guard && !quoted;
    if (head[at] == ';' && !quoted) return at;
  }
  return head.size();
}

}  // namespace

bool splitParameters(std::string_view text, size_t most, std::vector<HeadParameter> *parameters) {
  const bool guard = std::count(text.begin(), text.end(), '"') % 2 == 0;
  for (size_t start = 0; start <= text.size();) {
    if (parameters->size() == most) return false;
    const size_t end = parameterEnd(text, start, guard);
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

bool takeFold(ByteSource *source) {
  while (source->takeLineEnd()) {
  }
  if (!isBlank(source->peek())) return false;
  source->skip(1);
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
  if (nextInBuffer(line)) return true;
  // A quote that is never closed is a character like any other.
  if (!gather(line, Quotes::Guard)) {
    const Place end = line->end;
    source_->moveTo(line->start);
    if (!gather(line, Quotes::Plain)) {
      line->colon = false;
      line->end = end;
    }
  }
  return true;
}

// The usual head: whole in the buffer, without quotes.
bool ContentLines::nextInBuffer(ContentLine *line) {
  bool ended;
  const std::string_view bytes = source_->readyInLine(&ended);
  const size_t nameEnd = lengthBefore(bytes, endsPlainName);
  size_t size = nameEnd;
  if (size < bytes.size() && bytes[size] != ':') {
    size += lengthBefore(bytes.substr(size),
                         [](ByteVector b) { return isByte(b, ':') | isByte(b, '"'); });
  }
  if (size == bytes.size() || bytes[size] != ':' || size > LongestHead) return false;
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

bool ContentLines::gather(ContentLine *line, Quotes quotes) {
  head_.clear();
  bool quoted = false;
  for (;;) {
    bool ended;
    const std::string_view bytes = source_->readyInLine(&ended);
    for (size_t at = 0; at < bytes.size(); ++at) {
      if (bytes[at] == '"' && quotes == Quotes::Guard) quoted = !quoted;
      if (bytes[at] != ':' || quoted) continue;
      if (head_.size() + at > LongestHead) break;
      head_.append(bytes, 0, at);
      source_->skip(at + 1);
      line->value = source_->place();
      split(lengthBefore(head_, endsPlainName), line);
      return true;
    }
    if (head_.size() <= LongestHead) head_ += bytes;
    source_->skip(bytes.size());
    if (!ended && source_->peek() >= 0) continue;
    line->end = source_->place();
    if (!takeFold(source_)) return false;
    if (rule_ == FoldRule::KeepsBlank) head_ += ' ';
  }
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

#include "host/source/component_lines.h"

#include <algorithm>

#include "host/source/ascii_case.h"
#include "host/source/line_parameters.h"
#include "host/source/text_decoder.h"
#include "host/source/utf8.h"

namespace px {
namespace {

// Components that stand in a calendar side by side, never in one another.
bool isEntry(std::string_view name) {
  return name == "VEVENT" || name == "VTODO" || name == "VJOURNAL" || name == "VFREEBUSY" ||
         name == "VTIMEZONE";
}

void skipValue(ByteSource *source, const ContentLine &line) {
  ValueBytes(source, transferOf(line), FoldRule::DropsBlank).skip();
}

// The head of a value, in capitals and without blanks.
std::string headOf(ValueBytes *value, size_t longest) {
  std::string head;
  while (head.size() < longest) {
    const std::string_view piece = value->next();
    if (piece.empty()) break;
    for (const char c : piece) {
      if (c != ' ' && c != '\t' && head.size() < longest) head += capitalOf(c);
    }
  }
  return head;
}

}  // namespace

std::string takeComponentName(ByteSource *source, const FaultSink *faults) {
  constexpr size_t longest = 64;
  ValueBytes value(source, Transfer::Plain, FoldRule::DropsBlank);
  const std::string name = headOf(&value, longest);
  value.skip();
  if (faults && value.endsAtProperty()) (*faults)(source->place().line, FaultOfBreak);
  return isValidUtf8(name) ? name : asUtf8(name);
}

AgentValue agentValueAt(ByteSource *source) {
  constexpr std::string_view escaped = "BEGIN:VCARD\\N";
  constexpr std::string_view card = escaped.substr(0, escaped.size() - 2);
  const Place start = source->place();
  ValueBytes value(source, Transfer::Plain, FoldRule::DropsBlank);
  const std::string head = headOf(&value, escaped.size());
  source->moveTo(start);
  if (head == escaped) return AgentValue::EscapedCard;
  return head == card ? AgentValue::Card : AgentValue::Other;
}

ComponentLines::ComponentLines(ByteSource *source, ContentLines *lines, std::string name,
                               uint64_t beginLine, const FaultSink *faults)
    : source_(source),
      lines_(lines),
      name_(std::move(name)),
      beginLine_(beginLine),
      faults_(faults) {}

void ComponentLines::fault(uint64_t line, const std::string &text) const {
  if (faults_) (*faults_)(line, text);
}

// Whether a component that begins inside of `open` shows that the END of `open` is missing.
bool ComponentLines::beginsBeside(std::string_view begun, std::string_view open,
                                  bool behindAgent) const {
  if (begun == "VCALENDAR") return true;
  if (begun == "VCARD") return !behindAgent;
  return isEntry(begun) && open != "VCALENDAR";
}

ComponentLines::Item ComponentLines::next(ContentLine *line) {
  for (;;) {
    if (!lines_->next(line)) {
      fault(beginLine_, name_ + " without END");
      end_ = source_->place().position;
      return Item::End;
    }
    if (!line->colon) {
      fault(line->start.line, "no colon: not a property");
      continue;
    }
    if (equalsNoCase(line->name, "BEGIN")) {
      const std::string begun = takeComponentName(source_, faults_);
      if (begun.empty()) {
        fault(line->start.line, "BEGIN of nothing");
        continue;
      }
      if (beginsBeside(begun, name_, behindAgent_)) {
        fault(beginLine_, name_ + " without END");
        source_->moveTo(line->start);
        end_ = line->start.position;
        return Item::End;
      }
      nested_ = {begun, line->start, 0};
      passOver(begun);
      behindAgent_ = false;
      return Item::Nested;
    }
    if (equalsNoCase(line->name, "END")) {
      const std::string ended = takeComponentName(source_, faults_);
      if (ended != name_) fault(line->start.line, "END:" + ended + " for " + name_);
      end_ = source_->place().position;
      return Item::End;
    }
    const bool isAgent = equalsNoCase(line->name, "AGENT");
    if (isAgent && agentValueAt(source_) == AgentValue::Card) {
      nested_ = {"VCARD", line->value, 0};
      takeComponentName(source_, faults_);
      passOver("VCARD");
      return Item::Nested;
    }
    behindAgent_ = isAgent;
    return Item::Line;
  }
}

// Goes to the end of a nested component. Beyond a depth that nothing honest has, names are not
// kept, and any END closes the innermost one.
void ComponentLines::passOver(std::string name) {
  constexpr size_t deepest = 64;
  std::vector<std::string> open = {std::move(name)};
  size_t beyond = 0;
  bool behindAgent = false;
  ContentLine line;
  while (!open.empty()) {
    nested_.end = source_->place().position;
    if (lines_->passPlainLine()) {
      behindAgent = false;
      continue;
    }
    if (!lines_->next(&line)) return;
    if (!line.colon) continue;
    const bool begins = equalsNoCase(line.name, "BEGIN");
    const bool isAgent = equalsNoCase(line.name, "AGENT");
    const bool agentsCard = isAgent && agentValueAt(source_) == AgentValue::Card;
    if (begins || agentsCard) {
      std::string begun = takeComponentName(source_);
      if (agentsCard) begun = "VCARD";
      if (begun.empty()) continue;
      if (begun == "VCALENDAR" || beginsBeside(begun, open.back(), behindAgent || agentsCard)) {
        // It ends all that is open here; the component around decides for itself.
        source_->moveTo(line.start);
        return;
      }
      if (open.size() < deepest) {
        open.push_back(begun);
      } else {
        ++beyond;
      }
    } else if (equalsNoCase(line.name, "END")) {
      const std::string ended = takeComponentName(source_);
      if (beyond > 0) {
        --beyond;
      } else if (ended != open.back() && ended == name_) {
        source_->moveTo(line.start);
        return;
      } else {
        const auto match = std::find(open.rbegin(), open.rend(), ended);
        open.resize(match == open.rend() ? open.size() - 1
                                         : static_cast<size_t>(open.rend() - match) - 1);
      }
    } else {
      skipValue(source_, line);
    }
    behindAgent = isAgent;
  }
  nested_.end = source_->place().position;
}

}  // namespace px

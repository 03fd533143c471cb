#include "host/source/line_notes.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <stdexcept>
#include <type_traits>

namespace px {
namespace {

// A record: its length, a bit for each field that tells whether it holds anything, and the fields
// that do, one behind the other. Most hold nothing, and what is written has its price. Numbers take
// seven bits a byte, the lowest first, for most are small; texts and lists stand behind their
// length. A bool is its bit.

using FieldBits = uint16_t;

template <class Field>
bool holdsAnything(const Field &field) {
  if constexpr (requires { field.empty(); }) {
    return !field.empty();
  } else {
    return field != Field();
  }
}

// Where the fields of a record go: into a count of how many bytes they take at most, or to where
// that many have room.
struct FieldSize {
  void number(uint64_t) { most += 10; }
  void text(std::string_view text) { most += text.size(); }
  size_t most = 0;
};
struct FieldBytes {
  void number(uint64_t number) {
    char *to = next;
    for (; number >= 0x80; number >>= 7) *to++ = static_cast<char>(number | 0x80);
    *to++ = static_cast<char>(number);
    next = to;
  }
  void text(std::string_view text) { next = std::copy(text.begin(), text.end(), next); }
  char *next;
};

template <class Target>
class RecordWriter {
 public:
  explicit RecordWriter(Target to) : to_(to) {}

  template <class Field>
  void field(const Field &field) {
    if (holdsAnything(field)) {
      bits_ |= bit_;
      if constexpr (!std::is_same_v<Field, bool>) put(field);
    }
    bit_ <<= 1;
  }

  // A field that is always written: it has no bit.
  template <class Number>
  requires(std::is_arithmetic_v<Number> || std::is_enum_v<Number>) void put(Number number) {
    to_.number(static_cast<uint64_t>(number));
  }
  void put(const std::string &text) {
    put(text.size());
    to_.text(text);
  }
  void put(const Extent &extent) {
    put(extent.offset);
    put(extent.length);
  }
  template <class T>
  void put(const std::optional<T> &item) {
    put(*item);
  }
  void put(const Parameter &parameter) {
    put(parameter.name);
    put(parameter.values);
  }
  template <class A, class B>
  void put(const std::pair<A, B> &pair) {
    put(pair.first);
    put(pair.second);
  }
  template <class T>
  void put(const std::vector<T> &list) {
    put(list.size());
    for (const T &item : list) put(item);
  }

  FieldBits bits() const {
    assert(bit_ <= 1u << 16);  // as many fields as FieldBits has bits
    return static_cast<FieldBits>(bits_);
  }
  const Target &target() const { return to_; }

 private:
  Target to_;
  uint32_t bits_ = 0;
  uint32_t bit_ = 1;  // of the next field
};

// Appends the record that `write` gives to any RecordWriter.
template <class Write>
void append(Write write, SpoolFile *spool) {
  RecordWriter size{FieldSize()};
  write(size);
  constexpr size_t header = sizeof(uint32_t) + sizeof(FieldBits);
  char *const start = spool->room(header + size.target().most);
  RecordWriter record{FieldBytes{start + header}};
  write(record);
  const char *const end = record.target().next;
  const auto length = static_cast<uint32_t>(end - start - sizeof(uint32_t));
  const FieldBits bits = record.bits();
  std::memcpy(start, &length, sizeof length);
  std::memcpy(start + sizeof length, &bits, sizeof bits);
  spool->commit(end);
}

class RecordReader {
 public:
  // Of a whole record, behind its length.
  explicit RecordReader(std::string_view bytes) : next_(bytes.data() + sizeof(FieldBits)) {
    FieldBits bits;
    std::memcpy(&bits, bytes.data(), sizeof bits);
    bits_ = bits;
  }

  template <class Field>
  void field(Field *field) {
    const bool holds = (bits_ & 1) != 0;
    bits_ >>= 1;
    if constexpr (std::is_same_v<Field, bool>) {
      *field = holds;
    } else if (holds) {
      take(field);
    } else if constexpr (requires { field->clear(); }) {
      field->clear();
    } else {
      *field = Field();
    }
  }

  template <class Number>
  requires(std::is_arithmetic_v<Number> || std::is_enum_v<Number>) void take(Number *number) {
    auto byte = static_cast<uint8_t>(*next_++);
    uint64_t all = byte & 0x7F;
    for (int shift = 7; byte >= 0x80; shift += 7) {
      byte = static_cast<uint8_t>(*next_++);
      all |= (byte & uint64_t{0x7F}) << shift;
    }
    *number = static_cast<Number>(all);
  }
  void take(std::string *text) {
    uint32_t size;
    take(&size);
    text->assign(next_, size);
    next_ += size;
  }
  void take(Extent *extent) {
    take(&extent->offset);
    take(&extent->length);
  }
  template <class T>
  void take(std::optional<T> *item) {
    take(&item->emplace());
  }
  void take(Parameter *parameter) {
    take(&parameter->name);
    take(&parameter->values);
  }
  template <class A, class B>
  void take(std::pair<A, B> *pair) {
    take(&pair->first);
    take(&pair->second);
  }
  template <class T>
  void take(std::vector<T> *list) {
    uint32_t size;
    take(&size);
    list->resize(size);
    for (T &item : *list) take(&item);
  }

 private:
  const char *next_;
  uint32_t bits_;  // of the next field, and of those behind it
};

// Each record names its fields once, for both ways.

template <class Note, class Visit>
void visitLine(Note &note, Visit visit) {
  visit(note.dropped);
  visit(note.callLabel);
  visit(note.callName);
  visit(note.labelsGroup);
  visit(note.extent);
  visit(note.breakAdded);
  visit(note.fieldsInText);
  visit(note.fieldCount);
  visit(note.emptyFields);
  visit(note.data);
  visit(note.dataSize);
  visit(note.dataType);
}

template <class Head, class Visit>
void visitHead(Head &head, Visit visit) {
  visit(head.label);
  visit(head.name);
  visit(head.group);
  visit(head.parameters);
  visit(head.types);
}

// The role comes first, where roleOf() reads it.
template <class Note, class Visit>
void visitSummary(Note &note, Visit visit) {
  visit(note.role);
  visit(note.types);
  visit(note.value);
  visit(note.cut);
}

SummaryRole roleOf(std::string_view summary) {
  return static_cast<SummaryRole>(summary[sizeof(FieldBits)]);
}

template <class Note, class Visit>
void visitSection(Note &note, Visit visit) {
  visit(note.component);
  visit(note.version);
  visit(note.format);
  visit(note.extent);
  visit(note.partOf);
  visit(note.summaryRoles);
  visit(note.groupLabels);
  visit(note.firstLine);
  visit(note.firstSummary);
  visit(note.lineCount);
  visit(note.summaryCount);
}

}  // namespace

void LineNotes::add(const LineNote &note) {
  const LineHead &head = *note.head;
  const bool isNew = heads_.isNew(head.slot);
  const auto write = [&](auto &record) {
    visitLine(note, [&](const auto &field) { record.field(field); });
    record.field(isNew);
    record.put(head.slot);
    if (isNew) visitHead(head, [&](const auto &field) { record.put(field); });
  };
  append(write, &lines_);
  ++lineCount_;
}

void LineNotes::addSummary(SummaryRole role, const std::vector<std::string> &types,
                           const Extent &value, bool cut) {
  struct {
    SummaryRole role;
    const std::vector<std::string> &types;
    const Extent &value;
    bool cut;
  } const note = {role, types, value, cut};
  const auto write = [&](auto &record) {
    visitSummary(note, [&](const auto &field) { record.field(field); });
  };
  append(write, &summaries_);
  ++summaryCount_;
}

void LineNotes::add(SectionNote section) {
  section.firstLine = firstLine_;
  section.firstSummary = firstSummary_;
  section.lineCount = lineCount_;
  section.summaryCount = summaryCount_;
  const auto write = [&](auto &record) {
    visitSection(section, [&](const auto &field) { record.field(field); });
  };
  append(write, &sections_);
  ++sectionCount_;
  firstLine_ = lines_.size();
  firstSummary_ = summaries_.size();
  lineCount_ = summaryCount_ = 0;
}

bool RecordSpool::refill(size_t size) {
  constexpr size_t capacity = 16 * 1024;
  base_ += next_;
  next_ = 0;
  buffer_.resize(std::max(capacity, size));
  buffer_.resize(spool_.readAt(base_, buffer_.data(), buffer_.size()));
  return buffer_.size() >= size;
}

std::optional<std::string_view> RecordSpool::next() {
  uint32_t size;
  if (!hold(sizeof size)) return std::nullopt;
  std::memcpy(&size, buffer_.data() + next_, sizeof size);
  if (!hold(sizeof size + size)) throw std::logic_error("a note is cut short");
  const std::string_view record(buffer_.data() + next_ + sizeof size, size);
  next_ += sizeof size + size;
  return record;
}

void RecordSpool::moveTo(uint64_t position) {
  if (base_ <= position && position <= base_ + buffer_.size()) {
    next_ = static_cast<size_t>(position - base_);
  } else {
    base_ = position;
    next_ = 0;
    buffer_.clear();
  }
}

LineNoteReader::LineNoteReader(const LineNotes *notes)
    : lines_(&notes->lines_), summaries_(&notes->summaries_), sections_(&notes->sections_) {}

bool LineNoteReader::nextSection(SectionNote *section) {
  // Lines that nobody has read may have the heads of others.
  for (LineNote passed; linesRead_ < section_.lineCount;) nextLine(&passed);
  const auto bytes = sections_.next();
  if (!bytes) return false;
  RecordReader record(*bytes);
  visitSection(section_, [&](auto &field) { record.field(&field); });
  *section = section_;
  lines_.moveTo(section_.firstLine);
  linesRead_ = 0;
  role_ = SummaryRole::None;
  rolesFound_ = false;
  return true;
}

bool LineNoteReader::nextLine(LineNote *line) {
  if (linesRead_ == section_.lineCount) return false;
  ++linesRead_;
  RecordReader record(lines_.next().value());
  visitLine(*line, [&](auto &field) { record.field(&field); });
  bool isNew;
  uint8_t slot;
  record.field(&isNew);
  record.take(&slot);
  if (!heads_[slot]) heads_[slot] = std::make_unique<LineHead>();
  LineHead &head = *heads_[slot];
  if (isNew) {
    visitHead(head, [&](auto &field) { record.take(&field); });
    head.known = knownProperty(head.name, section_.format);
  }
  line->head = &head;
  return true;
}

// Where the lines of each role begin in the section, and how many there are.
void LineNoteReader::findRoles() {
  roles_ = {};
  summaries_.moveTo(section_.firstSummary);
  for (uint32_t i = 0; i < section_.summaryCount; ++i) {
    const uint64_t position = summaries_.position();
    RoleLines &lines = roles_[static_cast<size_t>(roleOf(summaries_.next().value()))];
    if (lines.count == 0) lines.first = position;
    ++lines.count;
  }
  rolesFound_ = true;
}

bool LineNoteReader::nextSummary(SummaryRole role, SummaryNote *summary) {
  if (!section_.has(role)) {
    role_ = SummaryRole::None;
    return false;
  }
  if (!rolesFound_) findRoles();
  const RoleLines &lines = roles_[static_cast<size_t>(role)];
  if (role != role_) {
    summaries_.moveTo(lines.first);
    summariesRead_ = 0;
    role_ = role;
  }
  if (summariesRead_ == lines.count) return false;
  ++summariesRead_;
  std::string_view bytes;
  do bytes = summaries_.next().value();
  while (roleOf(bytes) != role);
  RecordReader record(bytes);
  visitSummary(*summary, [&](auto &field) { record.field(&field); });
  return true;
}

}  // namespace px

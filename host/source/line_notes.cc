#include "host/source/line_notes.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <type_traits>

namespace px {
namespace {

// Fields one behind the other: numbers seven bits a byte, the lowest first, for most are small, and
// what is written has its price; texts and lists behind their length.

class RecordWriter {
 public:
  // Writes into `bytes`, whatever it holds, behind room for the length. It grows as it must.
  explicit RecordWriter(std::string *bytes) : bytes_(*bytes) { room(sizeof(uint32_t)); }

  std::string_view finish() {
    const auto size = static_cast<uint32_t>(size_ - sizeof(uint32_t));
    std::memcpy(bytes_.data(), &size, sizeof size);
    return {bytes_.data(), size_};
  }

  template <class Number>
  requires(std::is_arithmetic_v<Number> || std::is_enum_v<Number>) void put(Number number) {
    auto rest = static_cast<uint64_t>(number);
    char *to = room(LongestNumber);
    size_ -= LongestNumber - 1;
    for (; rest >= 0x80; rest >>= 7) {
      *to++ = static_cast<char>(rest | 0x80);
      ++size_;
    }
    *to = static_cast<char>(rest);
  }
  void put(const std::string &text) {
    put(static_cast<uint32_t>(text.size()));
    std::memcpy(room(text.size()), text.data(), text.size());
  }
  void put(const Extent &extent) {
    put(extent.offset);
    put(extent.length);
  }
  template <class T>
  void put(const std::optional<T> &item) {
    put(item.has_value());
    if (item) put(*item);
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
    put(static_cast<uint32_t>(list.size()));
    for (const T &item : list) put(item);
  }

 private:
  // Adds as many bytes to the record; answers where they stand.
  char *room(size_t size) {
    const size_t at = size_;
    size_ += size;
    if (bytes_.size() < size_) bytes_.resize(2 * size_);
    return bytes_.data() + at;
  }

  static constexpr size_t LongestNumber = 10;

  std::string &bytes_;
  size_t size_ = 0;  // of the record; behind it, bytes_ is room
};

class RecordReader {
 public:
  // Of a whole record.
  explicit RecordReader(std::string_view bytes) : next_(bytes.data()) {}

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
    bool has;
    take(&has);
    item->reset();
    if (has) take(&item->emplace());
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

// The role comes first: notes of other roles are passed over by it.
template <class Note, class Visit>
void visitSummary(Note &note, Visit visit) {
  visit(note.role);
  visit(note.types);
  visit(note.value);
  visit(note.cut);
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
  RecordWriter record(&record_);
  visitLine(note, [&](const auto &field) { record.put(field); });
  const LineHead &head = *note.head;
  const bool isNew = heads_.isNew(head.slot);
  record.put(head.slot);
  record.put(isNew);
  if (isNew) visitHead(head, [&](const auto &field) { record.put(field); });
  lines_.append(record.finish());
  ++lineCount_;
}

void LineNotes::add(const SummaryNote &note) {
  RecordWriter record(&record_);
  visitSummary(note, [&](const auto &field) { record.put(field); });
  summaries_.append(record.finish());
  ++summaryCount_;
}

void LineNotes::add(SectionNote section) {
  section.firstLine = firstLine_;
  section.firstSummary = firstSummary_;
  section.lineCount = lineCount_;
  section.summaryCount = summaryCount_;
  RecordWriter record(&record_);
  visitSection(section, [&](const auto &field) { record.put(field); });
  sections_.append(record.finish());
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
  visitSection(section_, [&](auto &field) { record.take(&field); });
  *section = section_;
  lines_.moveTo(section_.firstLine);
  linesRead_ = summariesRead_ = 0;
  role_ = SummaryRole::None;
  return true;
}

bool LineNoteReader::nextLine(LineNote *line) {
  if (linesRead_ == section_.lineCount) return false;
  ++linesRead_;
  RecordReader record(lines_.next().value());
  visitLine(*line, [&](auto &field) { record.take(&field); });
  uint8_t slot;
  bool isNew;
  record.take(&slot);
  record.take(&isNew);
  if (!heads_[slot]) heads_[slot] = std::make_unique<LineHead>();
  LineHead &head = *heads_[slot];
  if (isNew) {
    visitHead(head, [&](auto &field) { record.take(&field); });
    head.known = knownProperty(head.name, section_.format);
  }
  line->head = &head;
  return true;
}

bool LineNoteReader::nextSummary(SummaryRole role, SummaryNote *summary) {
  if (!section_.has(role)) {
    role_ = SummaryRole::None;
    return false;
  }
  if (role != role_) {
    summaries_.moveTo(section_.firstSummary);
    summariesRead_ = 0;
    role_ = role;
  }
  while (summariesRead_ < section_.summaryCount) {
    ++summariesRead_;
    const std::string_view bytes = summaries_.next().value();
    if (static_cast<SummaryRole>(bytes.front()) != role) continue;
    RecordReader record(bytes);
    visitSummary(*summary, [&](auto &field) { record.take(&field); });
    return true;
  }
  return false;
}

}  // namespace px

// What is kept beside a view, line by line, of that which the filter will not tell: names, groups,
// parameters, places in the file. Written in the order of the view's lines while it is made, read
// in the same order beside the filter's calls.

#ifndef PX_HOST_SOURCE_LINE_NOTES_H
#define PX_HOST_SOURCE_LINE_NOTES_H

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/io/spool_file.h"
#include "host/source/line_heads.h"
#include "host/source/property_table.h"

namespace px {

// A stretch of the file, in bytes.
struct Extent {
  uint64_t offset = 0;
  uint64_t length = 0;
  bool operator==(const Extent &) const = default;
};

// A line of the view that has output in the listing.
struct LineNote {
  LineNote() {}  // no aggregate, which would be filled with zeros first

  bool dropped = false;  // it is there for the summary only: its output is passed over

  // What the calls say first: a label's string id, or, when that is 0, a name.
  uint32_t callLabel = 0;
  std::string callName;

  const LineHead *head = nullptr;  // never null in a note that is added or read
  bool labelsGroup = false;        // an X-ABLabel line behind a property of its group
  std::optional<Extent> extent;

  bool breakAdded = false;     // a line end was put behind the value
  bool fieldsInText = false;   // fields stand in one text, divided by FieldDivider
  uint32_t fieldCount = 0;     // of a value of lines: as many fields it has,
  uint32_t emptyFields = 0;    // and, bit by bit, which of them are empty
  std::optional<Extent> data;  // an object's Base64 text in the file,
  uint64_t dataSize = 0;       // and the size of its content
  std::string dataType;        // and the MIME type that the line tells, or nothing
};

// A line of the view that the summary is made of.
struct SummaryNote {
  SummaryRole role = SummaryRole::None;
  std::vector<std::string> types;
  Extent value;      // in the view: quoted-printable in one line, fields divided by semicolons
  bool cut = false;  // the filter shows less than that; FieldDivider stands for line ends
};

struct SectionNote {
  std::string component;  // "VCARD", "VEVENT", in capitals
  std::string version;
  int16_t format = 0;
  std::optional<Extent> extent;
  uint32_t partOf = 0;
  uint32_t summaryRoles = 0;  // bit by bit, the roles that the section's lines have
  // Groups and what their X-ABLabel lines say; no more than MaxGroupLabels.
  std::vector<std::pair<std::string, std::string>> groupLabels;
  static constexpr size_t MaxGroupLabels = 64;

  uint64_t firstLine = 0;  // positions among the notes
  uint64_t firstSummary = 0;
  uint32_t lineCount = 0;
  uint32_t summaryCount = 0;

  bool has(SummaryRole role) const { return (summaryRoles >> static_cast<int>(role) & 1) != 0; }
};

class LineNotes {
 public:
  // A section's lines and summary lines are added first, then the section.
  void add(const LineNote &note);
  // What a SummaryNote holds; a role other than None.
  void addSummary(SummaryRole role, const std::vector<std::string> &types, const Extent &value,
                  bool cut);
  // Sets the positions and counts of `section` to what was added since the last one.
  void add(SectionNote section);

  // Where the heads of lines are put before their notes are added.
  LineHeads *heads() { return &heads_; }

  uint64_t sectionCount() const { return sectionCount_; }

  void clear() { *this = LineNotes(); }

 private:
  friend class LineNoteReader;

  SpoolFile lines_, summaries_, sections_;
  LineHeads heads_;
  uint64_t sectionCount_ = 0;
  uint64_t firstLine_ = 0;
  uint64_t firstSummary_ = 0;
  uint32_t lineCount_ = 0;
  uint32_t summaryCount_ = 0;
};

// The records of a spool, each behind its length, through a buffer.
class RecordSpool {
 public:
  explicit RecordSpool(const SpoolFile *spool) : spool_(*spool) {}

  // The next record, valid until the next call; nothing at the end.
  std::optional<std::string_view> next();
  // Of the next record.
  uint64_t position() const { return base_ + next_; }
  void moveTo(uint64_t position);

 private:
  // Brings as many bytes of what comes next into the buffer; false when there are fewer.
  bool hold(size_t size) { return buffer_.size() - next_ >= size || refill(size); }
  bool refill(size_t size);

  const SpoolFile &spool_;
  uint64_t base_ = 0;  // position of the buffer's first byte
  size_t next_ = 0;
  std::string buffer_;
};

// Reads notes in the order in which they were added.
class LineNoteReader {
 public:
  // `notes` isn't owned and doesn't change any more.
  explicit LineNoteReader(const LineNotes *notes);

  // Answer false when there is none left, in the section for lines and summary lines. The summary
  // lines of one role are read in order; those of another start from the section's first again. A
  // line's head stays until the next line is read.
  bool nextSection(SectionNote *section);
  bool nextLine(LineNote *line);
  bool nextSummary(SummaryRole role, SummaryNote *summary);

 private:
  struct RoleLines {
    uint64_t first = 0;  // position among the summary lines
    uint32_t count = 0;
  };
  void findRoles();

  RecordSpool lines_, summaries_, sections_;
  std::array<std::unique_ptr<LineHead>, LineHeads::Slots> heads_;
  SectionNote section_;
  uint32_t linesRead_ = 0;
  std::array<RoleLines, SummaryRoleCount> roles_;
  bool rolesFound_ = false;
  SummaryRole role_ = SummaryRole::None;  // the one that is being read,
  uint32_t summariesRead_ = 0;            // and how many of its lines have been
};

}  // namespace px

#endif

// What the heads of content lines say, each read once.
//
// Most lines of a file have one of the same few heads, such as "TEL;TYPE=WORK". A head is kept
// under its text until another one takes its slot. A note tells a head by its slot, and what it
// says only when the slot is new; the reader of the notes fills slots of its own, in the same
// order.

#ifndef PX_HOST_SOURCE_LINE_HEADS_H
#define PX_HOST_SOURCE_LINE_HEADS_H

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/source/property_table.h"
#include "host/source/value_bytes.h"

namespace px {

struct Parameter {
  std::string name;                 // in capitals; "TYPE" for a type without a name
  std::vector<std::string> values;  // quotes and escapes undone
  bool operator==(const Parameter &) const = default;
};

// Answers the type names among the parameters, in small letters: the known ones first, in
// the order in which the filter writes them.
std::vector<std::string> typesOf(const std::vector<Parameter> &parameters);

struct LineHead {
  const KnownProperty *known = nullptr;  // by the name
  uint32_t label = 0;                    // of the property; 0: it has none
  std::string name;                      // as the file writes it
  std::string group;
  std::vector<Parameter> parameters;
  std::vector<std::string> types;  // what typesOf says of them
  Transfer transfer = Transfer::Plain;
  bool namesOtherSet = false;  // a CHARSET other than UTF-8
  std::string inView;          // of a known property: what its line begins with when it is encoded

  uint8_t slot = 0;  // among LineHeads
};

class LineHeads {
 public:
  static constexpr size_t Slots = 256;

  // The head that was kept under `text`, as it is read by `rules`; null when there is none. It
  // stays until the next put().
  const LineHead *find(std::string_view text, uint32_t rules);

  // Empties a slot for another head. One with an empty text, or a long one, won't be found again.
  LineHead *put(std::string_view text, uint32_t rules);

  // Answers whether nobody has asked before for what is in the slot.
  bool isNew(uint8_t slot);

 private:
  static constexpr size_t LongestText = 256;

  struct Slot {
    std::string text;
    uint32_t rules = 0;
    bool isNew = false;
    LineHead head;
  };
  std::array<std::unique_ptr<Slot>, Slots> slots_;  // most files need few
  // Cards of one writer have their lines in one order, so the head that followed another one in the
  // last card is tried first.
  std::array<uint8_t, Slots> followers_{};
  size_t last_ = 0;  // the slot that was found last
};

}  // namespace px

#endif

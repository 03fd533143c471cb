// Byte-order marks, and files in UTF-16 and UTF-32.

#ifndef PX_HOST_SOURCE_UNICODE_INPUT_H
#define PX_HOST_SOURCE_UNICODE_INPUT_H

#include <cstdint>
#include <vector>

#include "host/io/spool_file.h"
#include "host/source/component_lines.h"
#include "px/vcard_io.h"

namespace px {

class UnicodeInput {
 public:
  // Looks at the first bytes of `file`, and brings a file in UTF-16 or UTF-32 into UTF-8. A file
  // without a mark counts as such when its first letters say so. Throws as SourceView does.
  UnicodeInput(VcardIo *file, const FaultSink &faults);

  bool marked() const { return unit_ > 1 || start_ > 0; }
  // The position of the first byte behind a mark, in io().
  uint64_t start() const { return start_; }
  // The text: the file itself, or what was made of it.
  VcardIo *io() { return unit_ > 1 ? static_cast<VcardIo *>(&io_) : file_; }

  // Where a position of the text lies in the file. It costs least near the one asked for last.
  uint64_t filePosition(uint64_t position) {
    return unit_ == 1 ? position : convertedPosition(position);
  }

 private:
  void convert(bool bigEndian, const FaultSink &faults);
  uint64_t convertedPosition(uint64_t position);
  uint64_t fileLength(uint64_t from, uint64_t to) const;

  VcardIo *file_;
  uint64_t unit_ = 1;  // bytes of a code unit
  uint64_t mark_ = 0;  // bytes of the mark in the file
  uint64_t start_ = 0;
  SpoolFile text_;
  SpoolIo io_;
  // The same place in the text and in the file: one for every so many bytes, in order, and the one
  // that was asked for last.
  struct Pair {
    uint64_t text = 0;
    uint64_t file = 0;
  };
  std::vector<Pair> index_;
  Pair last_;
};

}  // namespace px

#endif

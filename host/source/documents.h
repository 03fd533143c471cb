// The inputs that the filter is given for one file, in order: the view's documents, or the file
// itself.

#ifndef PX_HOST_SOURCE_DOCUMENTS_H
#define PX_HOST_SOURCE_DOCUMENTS_H

#include <cstdint>
#include <optional>

#include "host/io/buffered_io.h"
#include "host/io/limited_io.h"
#include "host/source/source_view.h"

namespace px {

enum class Reading {
  Viewed,  // today's cards, whole
  Raw,     // what the filter makes of the bytes
};

class Documents {
 public:
  struct Document {
    int16_t format = 0;     // to open the filter with
    VcardIo *io = nullptr;  // to read, until the next call of next()
    bool inPlace = false;   // it shows the file itself
  };

  // Neither `file` nor `limit` is owned. Throws as SourceView does.
  Documents(VcardIo *file, Reading reading, const FaultSink &faults, WorkLimit *limit);

  // False when there is none left, also behind the limit. Throws as check() does.
  bool next(Document *document);

  // Throws what has failed a read of the document, where it is text of the view: the filter takes
  // that for the end of the input. `file` tells of itself.
  void check() const {
    if (text_) text_->check();
  }

  // Whether the limit has ended the document. Its reads fail then.
  bool isRefused() const { return io_ && io_->refusedAt(); }

  // Takes how many calls the filter has made of the document. Answers whether more is too much.
  bool isSpent(uint64_t calls);

  // Ends the reading at the limit. `position` is the file's, for a document that is text of the
  // view.
  void stop(uint64_t position);

  // Null where there is no view.
  const SourceView *view() const { return view_ ? &*view_ : nullptr; }

 private:
  VcardIo *file_;
  WorkLimit *limit_;
  std::optional<SourceView> view_;
  bool given_ = false;  // the file itself
  bool inPlace_ = false;
  uint64_t callsNoted_ = 0;
  std::optional<SpoolIo> text_;
  std::optional<BufferedIo> buffer_;
  std::optional<LimitedIo> io_;
};

}  // namespace px

#endif

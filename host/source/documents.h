// The inputs that the filter is given for one file, in order: the view's documents, or the file
// itself.

#ifndef PX_HOST_SOURCE_DOCUMENTS_H
#define PX_HOST_SOURCE_DOCUMENTS_H

#include <cstdint>
#include <optional>

#include "host/io/buffered_io.h"
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

  // `file` isn't owned. Throws as SourceView does.
  Documents(VcardIo *file, Reading reading, const FaultSink &faults);

  // False when there is none left.
  bool next(Document *document);

  // Null where there is no view.
  const SourceView *view() const { return view_ ? &*view_ : nullptr; }

 private:
  VcardIo *file_;
  std::optional<SourceView> view_;
  bool given_ = false;  // the file itself
  std::optional<SpoolIo> text_;
  std::optional<BufferedIo> io_;
};

}  // namespace px

#endif

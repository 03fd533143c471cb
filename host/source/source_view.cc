#include "host/source/source_view.h"

#include "host/source/unicode_input.h"
#include "host/source/view_builder.h"

namespace px {

SourceView::SourceView(VcardIo *file, const FaultSink &faults) {
  UnicodeInput input(file, faults);
  ViewBuilder(&input, &text_, &notes_, &documents_, &faults).build();
}

bool SourceView::nextDocument(ViewDocument *document) {
  const size_t count = documents_.readAt(documentsRead_, document, sizeof *document);
  documentsRead_ += count;
  return count == sizeof *document;
}

}  // namespace px

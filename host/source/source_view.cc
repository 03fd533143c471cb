#include "host/source/source_view.h"

#include "host/source/plain_cards.h"
#include "host/source/unicode_input.h"
#include "host/source/view_builder.h"
#include "px/vcrd.h"

namespace px {

SourceView::SourceView(VcardIo *file, const FaultSink &faults) {
  UnicodeInput input(file, faults);
  if (!input.marked() && readPlainCards(file, &notes_)) {
    const ViewDocument document = {VcardFormatVcard, {}};
    documents_.append({reinterpret_cast<const char *>(&document), sizeof document});
    return;
  }
  notes_.clear();
  ViewBuilder(&input, &text_, &notes_, &documents_, &faults).build();
}

bool SourceView::nextDocument(ViewDocument *document) {
  const size_t count = documents_.readAt(documentsRead_, document, sizeof *document);
  documentsRead_ += count;
  return count == sizeof *document;
}

}  // namespace px

#include "host/source/documents.h"

#include <utility>

#include "host/source/sniffer.h"

namespace px {

Documents::Documents(VcardIo *file, Reading reading, const FaultSink &faults) : file_(file) {
  if (reading == Reading::Viewed) view_.emplace(file, faults);
}

bool Documents::next(Document *document) {
  check();
  ViewDocument next;
  if (view_ ? !view_->nextDocument(&next) : std::exchange(given_, true)) return false;
  document->inPlace = next.text.length == 0;
  document->format = view_ ? next.format : sniffFormat(file_);
  if (document->inPlace) {
    io_.emplace(file_);
  } else {
    text_.emplace(&view_->text(), next.text.offset, next.text.length);
    io_.emplace(&*text_);
  }
  document->io = &*io_;
  return true;
}

}  // namespace px

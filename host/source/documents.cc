#include "host/source/documents.h"

#include <utility>

#include "host/source/sniffer.h"

namespace px {

Documents::Documents(VcardIo *file, Reading reading, const FaultSink &faults, WorkLimit *limit)
    : file_(file), limit_(limit) {
  if (reading == Reading::Raw) return;
  LimitedIo source(file, limit, PastLimit::Ends);
  view_.emplace(&source, faults);
  limit->noteReached(source.reached());
  if (source.refusedAt()) limit->stop(*source.refusedAt());
}

bool Documents::next(Document *document) {
  check();
  if (isRefused()) {
    stop(0);
    return false;
  }
  ViewDocument next;
  if (view_ ? !view_->nextDocument(&next) : std::exchange(given_, true)) return false;
  inPlace_ = document->inPlace = next.text.length == 0;
  document->format = view_ ? next.format : sniffFormat(file_);
  VcardIo *source = file_;
  if (!inPlace_) source = &text_.emplace(&view_->text(), next.text.offset, next.text.length);
  // A stranger's bytes as they stand can make the filter go back and forth, which a buffer makes
  // worse: each time it is filled anew, and what is read again inside of it is work, too.
  if (view_) source = &buffer_.emplace(source);
  document->io = &io_.emplace(source, limit_, PastLimit::Fails);
  callsNoted_ = 0;
  return true;
}

bool Documents::isSpent(uint64_t calls) {
  if (inPlace_) limit_->noteReached(io_->reached());
  limit_->noteCalls(calls - callsNoted_);
  callsNoted_ = calls;
  return isRefused() || !limit_->allowsCalls();
}

void Documents::stop(uint64_t position) {
  limit_->stop(inPlace_ ? io_->refusedAt().value_or(io_->reached()) : position);
}

}  // namespace px

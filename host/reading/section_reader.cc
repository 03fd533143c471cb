#include "host/reading/section_reader.h"

#include <new>
#include <stdexcept>
#include <system_error>

#include "px/vcrd.h"

namespace px {
namespace {

LineNoteReader *readerOf(const SourceView *view, std::optional<LineNoteReader> *notes) {
  return view ? &notes->emplace(&view->notes()) : nullptr;
}

}  // namespace

void openRun(CardRun *run, int16_t format, Documents *documents) {
  run->giveUpWhere([=] { return documents->isSpent(run->given()); });
  const int32_t answer = run->open(format);
  if (answer == CardRun::OutOfMemory) throw std::bad_alloc();
  if (answer != VcardOpenGood) throw std::runtime_error("not a vCard or vCalendar file");
}

SectionReader::SectionReader(const FilterLibrary &filter, VcardIo *io, Reading reading,
                             const FaultSink &faults, CardEvents *events,
                             WorkLimit *limit)
    : filter_(filter),
      documents_(io, reading, faults, limit),
      calls_(filter, events, readerOf(documents_.view(), &notes_),
             documents_.view() ? &documents_.view()->text() : nullptr) {}

bool SectionReader::readSection() {
  if (isOver_ || (!sectionFollows_ && !openDocument())) return false;
  run_->beginSection();
  if (!readToEnd()) {
    documents_.stop(calls_.position());
    calls_.endRun();
    isOver_ = true;
  }
  if (!sectionFollows_) documents_.check();
  return true;
}

// Reads on to the section's end; false when the limit comes before it.
bool SectionReader::readToEnd() {
  sectionFollows_ = false;
  try {
    uint32_t last;
    do last = run_->read();
    while (last == SoBreakParagraph && !run_->gaveUp());
    sectionFollows_ = last == SoBreakSection && !run_->gaveUp();
    return !run_->gaveUp();
  } catch (const std::system_error &) {
    throw;  // of whoever writes
  } catch (const std::runtime_error &) {
    if (!documents_.isRefused()) throw;  // otherwise an object couldn't be read past the limit
    return false;
  }
}

bool SectionReader::openDocument() {
  run_.reset();  // before the input that it reads
  Documents::Document document;
  if (!documents_.next(&document)) return false;
  run_.emplace(filter_, document.io, &calls_);
  openRun(&*run_, document.format, &documents_);
  calls_.beginRun(document.format, run_->stream(), document.inPlace);
  return true;
}

OpenIo SectionReader::openObject(const Extent &place) {
  return openPlaced(filter_, run_->stream(), place);
}

}  // namespace px

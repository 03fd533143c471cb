#include "host/reading/section_reader.h"

#include <new>
#include <stdexcept>

#include "px/vcrd.h"

namespace px {
namespace {

LineNoteReader *readerOf(const SourceView *view, std::optional<LineNoteReader> *notes) {
  return view ? &notes->emplace(&view->notes()) : nullptr;
}

}  // namespace

void openRun(CardRun *run, int16_t format) {
  const int32_t answer = run->open(format);
  if (answer == CardRun::OutOfMemory) throw std::bad_alloc();
  if (answer != VcardOpenGood) throw std::runtime_error("not a vCard or vCalendar file");
}

SectionReader::SectionReader(const FilterLibrary &filter, VcardIo *io, Reading reading,
                             const FaultSink &faults, CardEvents *events)
    : filter_(filter),
      documents_(io, reading, faults),
      calls_(filter, events, readerOf(documents_.view(), &notes_),
             documents_.view() ? &documents_.view()->text() : nullptr) {}

bool SectionReader::readSection() {
  if (!sectionFollows_ && !openDocument()) return false;
  run_->beginSection();
  uint32_t last;
  do last = run_->read();
  while (last == SoBreakParagraph);
  sectionFollows_ = last == SoBreakSection;
  if (!sectionFollows_) documents_.check();
  return true;
}

bool SectionReader::openDocument() {
  run_.reset();  // before the input that it reads
  Documents::Document document;
  if (!documents_.next(&document)) return false;
  run_.emplace(filter_, document.io, &calls_);
  openRun(&*run_, document.format);
  calls_.beginRun(document.format, run_->stream(), document.inPlace);
  return true;
}

OpenIo SectionReader::openObject(const Extent &place) {
  return openPlaced(filter_, run_->stream(), place);
}

}  // namespace px

#include "host/reading/file_reading.h"

#include <new>
#include <stdexcept>

#include "host/filter/card_run.h"
#include "host/reading/call_reader.h"
#include "host/source/sniffer.h"
#include "host/source/source_view.h"

namespace px {
namespace {

// Runs the filter over one document. Answers false when the limit has ended it.
bool readRun(const FilterLibrary &filter, LimitedIo *io, const ViewDocument &document,
             CallReader *reader, WorkLimit *limit) {
  const bool inPlace = document.text.length == 0;
  CardRun run(filter, io, reader);
  openRun(&run, document.format);
  reader->beginRun(document.format, run.stream(), inPlace);
  if (readLimited(&run, *io, inPlace, limit)) return true;
  limit->stop(reader->position());
  reader->endRun();
  return false;
}

}  // namespace

void openRun(CardRun *run, int16_t format) {
  const int32_t answer = run->open(format);
  if (answer == CardRun::OutOfMemory) throw std::bad_alloc();
  if (answer != VcardOpenGood) throw std::runtime_error("not a vCard or vCalendar file");
}

bool readLimited(CardRun *run, const LimitedIo &io, bool isFile, WorkLimit *limit) {
  uint64_t noted = 0;
  const auto isSpent = [&] {
    if (isFile) limit->noteReached(io.reached());
    limit->noteCalls(run->given() - noted);
    noted = run->given();
    return io.refusedAt() || !limit->allowsCalls();
  };
  try {
    if (run->readAll(isSpent)) return true;
  } catch (const std::runtime_error &) {
    if (!io.refusedAt()) throw;  // otherwise an object couldn't be read past the limit
  }
  if (isFile) limit->stop(io.refusedAt().value_or(io.reached()));
  return false;
}

void readFile(const FilterLibrary &filter, VcardIo *io, Reading reading, const FaultSink &faults,
              CardEvents *events, WorkLimit *limit) {
  WorkLimit none(false);
  if (!limit) limit = &none;
  LimitedIo file(io, limit, PastLimit::Fails);
  if (reading == Reading::Raw) {
    CallReader reader(filter, events, nullptr, nullptr);
    readRun(filter, &file, {sniffFormat(io), {}}, &reader, limit);
    return;
  }
  LimitedIo source(io, limit, PastLimit::Ends);
  SourceView view(&source, faults);
  limit->noteReached(source.reached());
  if (source.refusedAt()) limit->stop(*source.refusedAt());
  LineNoteReader notes(&view.notes());
  CallReader reader(filter, events, &notes, &view.text());
  ViewDocument document;
  while (view.nextDocument(&document)) {
    SpoolIo text(&view.text(), document.text.offset, document.text.length);
    LimitedIo limitedText(&text, limit, PastLimit::Fails);
    const bool inPlace = document.text.length == 0;
    if (!readRun(filter, inPlace ? &file : &limitedText, document, &reader, limit)) return;
  }
}

}  // namespace px

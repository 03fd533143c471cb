#include "host/reading/file_reading.h"

#include <new>
#include <stdexcept>

#include "host/filter/card_run.h"
#include "host/reading/call_reader.h"
#include "host/source/sniffer.h"
#include "host/source/source_view.h"

namespace px {
namespace {

void readRun(const FilterLibrary &filter, VcardIo *io, int16_t format, bool inPlace,
             CallReader *reader) {
  CardRun run(filter, io, reader);
  openRun(&run, format);
  reader->beginRun(format, run.stream(), inPlace);
  run.readAll();
}

}  // namespace

void openRun(CardRun *run, int16_t format) {
  const int32_t answer = run->open(format);
  if (answer == CardRun::OutOfMemory) throw std::bad_alloc();
  if (answer != VcardOpenGood) throw std::runtime_error("not a vCard or vCalendar file");
}

void readFile(const FilterLibrary &filter, VcardIo *io, Reading reading, const FaultSink &faults,
              CardEvents *events) {
  if (reading == Reading::Raw) {
    CallReader reader(filter, events, nullptr, nullptr);
    return readRun(filter, io, sniffFormat(io), true, &reader);
  }
  SourceView view(io, faults);
  LineNoteReader notes(&view.notes());
  CallReader reader(filter, events, &notes, &view.text());
  ViewDocument document;
  while (view.nextDocument(&document)) {
    SpoolIo text(&view.text(), document.text.offset, document.text.length);
    const bool inPlace = document.text.length == 0;
    readRun(filter, inPlace ? io : &text, document.format, inPlace, &reader);
    text.check();
  }
}

}  // namespace px

#include "host/filter/card_run.h"

namespace px {

CardRun::CardRun(const FilterLibrary &filter, VcardIo *io, Output *output)
    : filter_(filter), route_(), data_(filter.allocProc()) {
  route_.output = output;
  if (!data_) return;
  filter_.localUp(io, &stream_, data_);
  routeOutput(filter_, data_, &route_);
}

CardRun::~CardRun() {
  VcardIo *io;
  if (stream_) filter_.localDown(stream_, &io);
  if (data_) filter_.freeProc(data_);
}

int32_t CardRun::open(int16_t formatId, VcardInfo *info) {
  return stream_ ? filter_.streamOpen(stream_, formatId, 0, info, data_) : OutOfMemory;
}

void CardRun::beginSection() {
  filter_.streamTell(0, data_);
  filter_.streamSection(0, data_);
}

uint32_t CardRun::read() {
  filter_.streamRead(0, data_);
  route_.flush();
  if (route_.failure) std::rethrow_exception(route_.failure);
  return route_.lastBreak;
}

void CardRun::readAll() {
  uint32_t last;
  do {
    beginSection();
    do last = read();
    while (last == SoBreakParagraph && !gaveUp());
  } while (last == SoBreakSection && !gaveUp());
}

}  // namespace px

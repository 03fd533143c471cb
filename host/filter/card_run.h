// A run over one input: a record and a stream over an I/O object, driven into one Output.

#ifndef PX_HOST_FILTER_CARD_RUN_H
#define PX_HOST_FILTER_CARD_RUN_H

#include <cstdint>
#include <functional>
#include <utility>

#include "host/filter/filter_library.h"
#include "host/filter/output.h"
#include "px/vcrd.h"

namespace px {

class CardRun {
 public:
  // `filter`, `io` and `output` aren't owned and outlive the run.
  CardRun(const FilterLibrary &filter, VcardIo *io, Output *output);
  ~CardRun();
  CardRun(const CardRun &) = delete;
  CardRun &operator=(const CardRun &) = delete;

  // Answers what VwStreamOpen answers, or OutOfMemory when there was no record or no stream. Comes
  // first; the steps below are for a run that was opened with the answer VcardOpenGood.
  static constexpr int32_t OutOfMemory = -2;
  int32_t open(int16_t formatId, VcardInfo *info = nullptr);

  // Tells the position, so that the second pass can go back to it, and begins the section there.
  void beginSection();

  // Reads on, up to a stop or the end of the section. Answers the kind of the last SoEmitBreak: a
  // paragraph's when the output has asked to stop. Throws what a member of the output has thrown.
  uint32_t read();

  // Reads all sections to the end of the document, going on behind every stop, so the output sees
  // one unbroken sequence of calls. An output that wants to give up throws.
  void readAll();

  // Asks `givesUp` at each SoEmitBreak. Where it answers true the run is over: no member of the
  // output is called any more, and nothing is to be read.
  void giveUpWhere(std::function<bool()> givesUp) { route_.givesUp = std::move(givesUp); }
  bool gaveUp() const { return route_.isOver && !route_.failure; }

  // How many calls the filter has made.
  uint64_t given() const { return route_.given; }

  VcardData *data() { return data_; }
  VcardStream *stream() { return stream_; }

 private:
  const FilterLibrary &filter_;
  OutputRoute route_;
  VcardData *data_;
  VcardStream *stream_ = nullptr;
};

}  // namespace px

#endif

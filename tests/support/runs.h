// Runs of the filter over bytes, with the calls that it made. It brings all that most tests need.

#ifndef PX_TESTS_SUPPORT_RUNS_H
#define PX_TESTS_SUPPORT_RUNS_H

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/filter/card_run.h"
#include "host/filter/filter_library.h"
#include "host/io/memory_io.h"
#include "host/writers/trace_writer.h"
#include "tests/support/brief.h"
#include "tests/support/short_form.h"

namespace px::test {

// The library under test, loaded the way that every host loads it.
inline const FilterLibrary &filter() { return filterLibrary(); }

// An output that records the trace and asks for a stop at the paragraphs that `stopAt` names,
// counted from 1.
class Recorder : public TraceWriter {
 public:
  Recorder();
  bool emitBreak(uint32_t kind, uint32_t zero) override;

  Trace trace;
  std::function<bool(int paragraph)> stopAt;

 private:
  int paragraph_ = 0;
};

// What a run gave. `trace` is empty when the stream wasn't opened. `saved` is the state that
// VwGetData gives at the end.
struct Result {
  int32_t opened;
  Trace trace;
  std::string saved;
};

// Fails the running test when two traces differ, and shows where they part.
void expectSameCalls(const Trace &expected, const Trace &other, const std::string &how);

// Fails the running test when two texts differ, and shows where they part.
void expectSameText(std::string_view expected, std::string_view other, const std::string &how);

// One run over all sections, with `VwStreamTell` before each of them.
Result runOnce(std::string_view bytes, int16_t format, const MemoryIoOptions &io = {},
               std::function<bool(int)> stopAt = {});

// The run of a file, after a check that neither the size of reads and buffer, nor the slots' width,
// nor a stop at every paragraph makes a difference to the calls. A difference is a failure of the
// running test. Stops are left out where `stops` is false.
Result run(std::string_view bytes, int16_t format = VcardFormatVcard, bool stops = true);

// Sets the buffer of the streams that are made in its lifetime, in kilobytes.
class BufferSize {
 public:
  explicit BufferSize(uint32_t kilobytes);
  ~BufferSize();
};

// The sections of a file in the brief form.
std::vector<Section> sections(std::string_view bytes, int16_t format = VcardFormatVcard);

// The listing or the summary of a card made of `lines` between BEGIN and END, without the end of
// the document. The lines stand in the text as they are, CR LF included.
std::string listing(std::string_view lines, int16_t format = VcardFormatVcard);
std::string summary(std::string_view lines, int16_t format = VcardFormatVcard);

}  // namespace px::test

#endif

// What a host does with the filter's output: one member a routine, each of them optional.
//
// routeOutput stores routines in a record that hand every call to an Output. The members are named
// like the routines of px/output_routines.h, which says what each call means. Characters are handed
// on in runs: all that came since the last other call. A long run comes in parts.

#ifndef PX_HOST_FILTER_OUTPUT_H
#define PX_HOST_FILTER_OUTPUT_H

#include <cstdint>
#include <exception>
#include <functional>
#include <span>

#include "px/vcrd.h"

namespace px {

struct FilterLibrary;

class Output {
 public:
  virtual ~Output() = default;

  // `more`: the run goes on in the next call, which is one of this member, too.
  virtual void emitChars(std::span<const uint16_t> /*codes*/, bool /*more*/) {}
  virtual void emitSpecial(uint32_t /*kind*/) {}
  virtual void setCharHeight(uint32_t /*height*/) {}
  virtual void addTabStop(const VcardTabStop &) {}
  // Answers true to ask the filter to stop; it listens at the end of a paragraph only.
  virtual bool emitBreak(uint32_t /*kind*/, uint32_t /*zero*/) { return false; }
  virtual void beginSection(uint32_t, uint32_t, uint32_t) {}
  virtual void emitObject(const VcardObjectRecord &) {}
  // `record` is a VcardStyleDef or a VcardAttachmentDef, as `type` says.
  virtual void beginDefinition(uint32_t /*type*/, uint32_t /*id*/, const void * /*record*/) {}
  virtual void endDefinition(uint32_t /*type*/, uint32_t /*id*/) {}
  virtual void routine88(uint32_t, uint32_t) {}
  virtual void routine89(uint32_t, uint32_t) {}
  virtual void setCharset(uint32_t /*set*/) {}
  virtual uint32_t getObjectBase() { return 0; }
  virtual void emitResourceString(uint32_t /*id*/) {}
  virtual void useStyle(uint32_t /*id*/) {}
  virtual void setAttribute(uint32_t, uint32_t, uint32_t, uint32_t) {}
  virtual void setObjectData(uint32_t /*selector*/, uint64_t, uint64_t) {}
  virtual void commitObjectData() {}
};

// The road from a record to an Output, and what was noted on it.
//
// The filter has no way to pass an exception on, so none reaches it: the first one that a member
// throws is kept in `failure`, no member is called after it, and the filter is asked to stop. Who
// drives the filter throws it again. Where `givesUp` is set it is asked at each SoEmitBreak, and
// when it answers true the route ends in the same way, without a failure.
struct OutputRoute {
  Output *output = nullptr;
  std::function<bool()> givesUp{};
  bool isOver = false;     // no member is called any more
  uint64_t given = 0;      // calls, SoEmitChar included
  uint32_t lastBreak = 0;  // the kind of the last SoEmitBreak, 0 before the first
  std::exception_ptr failure{};

  static constexpr uint32_t Capacity = 4096;
  uint32_t held = 0;  // characters that wait
  uint16_t codes[Capacity];

  // Hands on the characters that wait, which ends their run.
  void flush() noexcept {
    if (held > 0) handOn();
  }
  void handOn() noexcept;
  // Makes room. One character stays, so that there is a last part when the run ends.
  void handOnPart() noexcept;
  // Keeps the exception that is being handled.
  void fail() noexcept;
};

// Sets the user values and all routines of `data` so that they call `route->output`. Both must
// outlive the record's use. Comes after VwLocalUp, which takes all routines away.
void routeOutput(const FilterLibrary &filter, VcardData *data, OutputRoute *route);

}  // namespace px

#endif

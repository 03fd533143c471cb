// What a host does with the filter's output: one member a routine, each of them optional.
//
// routeOutput stores routines in a record that hand every call to an Output. The members are named
// like the routines of px/output_routines.h, which says what each call means.

#ifndef PX_HOST_OUTPUT_H
#define PX_HOST_OUTPUT_H

#include <cstdint>
#include <exception>

#include "px/vcrd.h"

namespace px {

struct FilterLibrary;

class Output {
 public:
  virtual ~Output() = default;

  virtual void emitChar(uint16_t /*code*/) {}
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
// drives the filter throws it again.
struct OutputRoute {
  Output *output;
  uint32_t lastBreak = 0;  // the kind of the last SoEmitBreak, 0 before the first
  std::exception_ptr failure{};
};

// Sets the user values and all routines of `data` so that they call `route->output`. Both must
// outlive the record's use. Comes after VwLocalUp, which takes all routines away.
void routeOutput(const FilterLibrary &filter, VcardData *data, OutputRoute *route);

}  // namespace px

#endif

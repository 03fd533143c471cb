// The filter library, loaded at run time, and its entry points.

#ifndef PX_HOST_FILTER_FILTER_LIBRARY_H
#define PX_HOST_FILTER_FILTER_LIBRARY_H

#include "px/util.h"
#include "px/vcrd.h"

namespace px {

struct FilterLibrary {
  decltype(VwStreamOpen) *streamOpen;
  decltype(VwStreamSection) *streamSection;
  decltype(VwStreamRead) *streamRead;
  decltype(VwStreamTell) *streamTell;
  decltype(VwStreamSeek) *streamSeek;
  decltype(VwGetInfo) *getInfo;
  decltype(VwGetData) *getData;
  decltype(VwSetData) *setData;
  decltype(VwLocalUp) *localUp;
  decltype(VwLocalDown) *localDown;
  decltype(VwAllocProc) *allocProc;
  decltype(VwFreeProc) *freeProc;
  decltype(VwSetUser) *setUser;
  decltype(VwSetSoRtn) *setSoRtn;
  decltype(VwDoSpecial) *doSpecial;
  decltype(UTSetGlobalOption) *setGlobalOption;
  const char *version;  // the dotted version number alone
};

// The library, loaded at the first call: libpx_vcrd from beside the library that this stands in,
// from beside the program's other libraries or from the system, with its entry points from
// VwGetRtns. It stays loaded until the process ends.
// Throws std::runtime_error, whose text is for a person, when it can't be loaded.
const FilterLibrary &filterLibrary();

// Sets the size of the filter's input buffer, for all runs of the process that are begun later.
void setInputBuffer(const FilterLibrary &filter, uint32_t kilobytes);

}  // namespace px

#endif

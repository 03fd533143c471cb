// The filter library, loaded at run time, and its entry points.

#ifndef PX_HOST_FILTER_LIBRARY_H
#define PX_HOST_FILTER_LIBRARY_H

#include <string>

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
  const char *version;  // the dotted version number alone
};

// Loads libpx_vcrd.so, from ../lib beside the program or, if it isn't there, from where the system
// looks, and takes its entry points from VwGetRtns. It stays loaded until the process ends; later
// calls answer the same table. Answers null and stores the reason at `error` when it can't be used.
const FilterLibrary *loadFilterLibrary(std::string *error);

}  // namespace px

#endif

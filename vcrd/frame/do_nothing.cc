// Routines that do nothing and answer their first argument. SODummy stands for every output routine
// that the host didn't store, so a paragraph's end that nobody takes answers its own kind, 1: a
// request to stop. The others keep places in the tables that hosts know.

#include "px/vcrd.h"

int64_t SODummy(int64_t first) { return first; }

int64_t VwStreamClose(int64_t first) { return first; }

int64_t VwStreamReadRecord(int64_t first) { return first; }

int64_t VwGetSectionDataFunc(int64_t first) { return first; }

int64_t VwSetSectionDataFunc(int64_t first) { return first; }

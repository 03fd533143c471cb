/* The public headers, as a host in C sees them; public_header.cc compiles the same in C++. */
#include "px/cards.h"
#include "px/core.h"
#include "px/output_routines.h"
#include "px/string_ids.h"
#include "px/util.h"
#include "px/vcard_io.h"
#include "px/vcrd.h"

/* The one record of the interface that the filter itself never makes. */
typedef char SizeOfInfo[sizeof(VcardInfo) == 30 ? 1 : -1];

/* The types of the entry points are those of the entry points. */
extern VwGetRtnsRoutine VwGetRtns;
extern VwAllocProcRoutine VwAllocProc;
extern VwFreeProcRoutine VwFreeProc;
extern VwLocalUpRoutine VwLocalUp;
extern VwLocalDownRoutine VwLocalDown;
extern VwSetUserRoutine VwSetUser;
extern VwSetSoRtnRoutine VwSetSoRtn;
extern VwStreamOpenRoutine VwStreamOpen;
extern VwStreamSectionRoutine VwStreamSection;
extern VwStreamReadRoutine VwStreamRead;
extern VwStreamTellRoutine VwStreamTell;
extern VwStreamSeekRoutine VwStreamSeek;
extern VwGetInfoRoutine VwGetInfo;
extern VwGetDataRoutine VwGetData;
extern VwSetDataRoutine VwSetData;
extern VwDoSpecialRoutine VwDoSpecial;

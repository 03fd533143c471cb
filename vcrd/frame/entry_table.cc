// The table of entry points that a host takes first.

#include "px/vcrd.h"

namespace {

template <typename Routine>
void *Entry(Routine *routine) {
  return reinterpret_cast<void *>(routine);
}

}  // namespace

void VwGetRtns(void **table, uint16_t count) {
  table[34] = nullptr;
  table[35] = nullptr;
  if (count == 0) return;
  table[VwSlotStreamOpen] = Entry(VwStreamOpen);
  table[VwSlotStreamSection] = Entry(VwStreamSection);
  table[VwSlotStreamRead] = Entry(VwStreamRead);
  table[VwSlotStreamTell] = Entry(VwStreamTell);
  table[VwSlotStreamSeek] = Entry(VwStreamSeek);
  table[VwSlotGetInfo] = Entry(VwGetInfo);
  table[VwSlotGetData] = Entry(VwGetData);
  table[VwSlotSetData] = Entry(VwSetData);
  table[VwSlotLocalUp] = Entry(VwLocalUp);
  table[VwSlotLocalDown] = Entry(VwLocalDown);
  table[VwSlotAllocProc] = Entry(VwAllocProc);
  table[VwSlotFreeProc] = Entry(VwFreeProc);
  table[VwSlotSetUser] = Entry(VwSetUser);
  table[VwSlotSetSoRtn] = Entry(VwSetSoRtn);
  table[VwSlotStreamClose] = Entry(VwStreamClose);
  table[15] = nullptr;
  table[16] = nullptr;
  table[VwSlotStreamReadRecord] = Entry(VwStreamReadRecord);
  if (count > 18) table[VwSlotDoSpecial] = Entry(VwDoSpecial);
  if (count > 22) {
    for (int slot = 19; slot <= 22; ++slot) table[slot] = nullptr;
  }
  if (count > 29) {
    for (int slot = 23; slot <= 33; ++slot) table[slot] = nullptr;
  }
}

// The record's life, and what a host stores in it and takes from it.

#include <cstring>

#include "px/core.h"
#include "vcrd/frame/host_routines.h"
#include "vcrd/frame/vcard_data.h"

VcardData *VwAllocProc() {
  const uintptr_t handle = SYSNativeAlloc(sizeof(VcardData));
  if (handle == 0) return nullptr;
  auto *data = static_cast<VcardData *>(SYSNativeLock(handle));
  std::memset(data, 0, sizeof(VcardData));
  data->MemHandle = handle;
  return data;
}

void VwFreeProc(VcardData *data) {
  const uintptr_t handle = data->MemHandle;
  if (handle == 0) return;
  SYSNativeUnlock(handle);
  SYSNativeFree(handle);
}

void VwSetUser(uint64_t user0, uint64_t user1, VcardData *data) {
  data->User[0] = user0;
  data->User[1] = user1;
}

void VwSetSoRtn(int16_t id, SoRoutine routine, VcardData *data) {
  const int slot = VcardRoutineSlot(id);
  if (slot < 0) return;
  data->Routine[slot] = routine != nullptr ? routine : reinterpret_cast<SoRoutine>(SODummy);
}

void VwGetData(void *out, VcardData *data) { std::memcpy(out, data, kSaveSize); }

void VwSetData(const void *in, VcardData *data) {
  std::memcpy(static_cast<void *>(data), in, kSaveSize);
}

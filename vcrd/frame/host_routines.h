// The calls of the host's output routines, each with the record last instead of the two user
// values that it holds. The record has a slot for each id from 1 to 118 and from 121 to 150.

#ifndef PX_VCRD_FRAME_HOST_ROUTINES_H
#define PX_VCRD_FRAME_HOST_ROUTINES_H

#include <cstdint>

#include "vcrd/frame/vcard_data.h"

// The slot of an id, or -1 for an id without one.
constexpr int VcardRoutineSlot(int id) {
  if (id >= 1 && id <= 118) return id - 1;
  if (id >= 121 && id <= 150) return id - 3;
  return -1;
}
static_assert(VcardRoutineSlot(150) == kRoutineCount - 1);

template <typename Routine, int Id, typename... Arguments>
inline int64_t VcardCallHost(const VcardData *data, Arguments... arguments) {
  static_assert(VcardRoutineSlot(Id) >= 0);
  const auto routine = reinterpret_cast<Routine>(data->Routine[VcardRoutineSlot(Id)]);
  return routine(arguments..., data->User[0], data->User[1]);
}

inline void SoEmitChar(uint16_t code, const VcardData *data) {
  VcardCallHost<SoEmitCharRoutine, SoIdEmitChar>(data, code);
}
// SoEmitChar for each byte of a run. What the calls need is looked up once: a routine may not
// change the record.
inline void VcardEmitRun(const uint8_t *begin, const uint8_t *end, const VcardData *data) {
  const SoRoutine stored = data->Routine[VcardRoutineSlot(SoIdEmitChar)];
  const auto routine = reinterpret_cast<SoEmitCharRoutine>(stored);
  const uint64_t user0 = data->User[0];
  const uint64_t user1 = data->User[1];
  for (const uint8_t *p = begin; p != end; ++p) routine(*p, user0, user1);
}

inline void SoEmitSpecial(uint32_t kind, const VcardData *data) {
  VcardCallHost<SoEmitSpecialRoutine, SoIdEmitSpecial>(data, kind);
}
inline void SoSetCharHeight(uint32_t height, const VcardData *data) {
  VcardCallHost<SoSetCharHeightRoutine, SoIdSetCharHeight>(data, height);
}
inline void SoAddTabStop(const VcardTabStop *tab, const VcardData *data) {
  VcardCallHost<SoAddTabStopRoutine, SoIdAddTabStop>(data, tab);
}
inline int64_t SoEmitBreak(uint32_t kind, const VcardData *data) {
  return VcardCallHost<SoEmitBreakRoutine, SoIdEmitBreak>(data, kind, uint32_t{0});
}
inline void SoBeginSection(const VcardData *data) {
  VcardCallHost<SoBeginSectionRoutine, SoIdBeginSection>(data, uint32_t{0}, uint32_t{0},
                                                         uint32_t{0});
}
inline void SoEmitObject(const VcardObjectRecord *object, const VcardData *data) {
  VcardCallHost<SoEmitObjectRoutine, SoIdEmitObject>(data, object);
}
inline void SoBeginDefinition(uint32_t type, uint32_t id, const void *record,
                              const VcardData *data) {
  VcardCallHost<SoBeginDefinitionRoutine, SoIdBeginDefinition>(data, type, id, record);
}
inline void SoEndDefinition(uint32_t type, uint32_t id, const VcardData *data) {
  VcardCallHost<SoEndDefinitionRoutine, SoIdEndDefinition>(data, type, id);
}
inline void SoRoutine88(const VcardData *data) {
  VcardCallHost<SoRoutine88Routine, SoIdRoutine88>(data, uint32_t{1}, uint32_t{0});
}
inline void SoRoutine89(const VcardData *data) {
  VcardCallHost<SoRoutine89Routine, SoIdRoutine89>(data, uint32_t{1}, uint32_t{0});
}
inline void SoSetCharset(uint32_t set, const VcardData *data) {
  VcardCallHost<SoSetCharsetRoutine, SoIdSetCharset>(data, set);
}
inline void SoGetObjectBase(uint32_t *base, const VcardData *data) {
  VcardCallHost<SoGetObjectBaseRoutine, SoIdGetObjectBase>(data, base);
}
inline void SoEmitResourceString(uint32_t id, const VcardData *data) {
  VcardCallHost<SoEmitResourceStringRoutine, SoIdEmitResourceString>(data, id);
}
inline void SoUseStyle(uint32_t id, const VcardData *data) {
  VcardCallHost<SoUseStyleRoutine, SoIdUseStyle>(data, id);
}
inline void SoSetAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t d, const VcardData *data) {
  VcardCallHost<SoSetAttributeRoutine, SoIdSetAttribute>(data, a, b, c, d);
}
inline void SoSetObjectData(uint32_t selector, uint64_t a, uint64_t b, const VcardData *data) {
  VcardCallHost<SoSetObjectDataRoutine, SoIdSetObjectData>(data, selector, a, b);
}
inline void SoCommitObjectData(const VcardData *data) {
  VcardCallHost<SoCommitObjectDataRoutine, SoIdCommitObjectData>(data);
}

// The end of a paragraph, the one call whose answer counts: its low 16 bits being 1 asks for a
// stop.
inline void VcardEndParagraph(VcardData *data) {
  if (static_cast<uint16_t>(SoEmitBreak(SoBreakParagraph, data)) == 1) data->StopRequested = 1;
}

#endif

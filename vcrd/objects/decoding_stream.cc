// The decoded content of an embedded object: a pair of objects of the host's, one over the other,
// behind the slots of one.

#include <cstddef>

#include "px/core.h"
#include "vcrd/input/stream.h"

static_assert(sizeof(VcardIo) == 72);
static_assert(sizeof(VcardRangeSpec) == 24 && sizeof(VcardDecodeSpec) == 40);
static_assert(offsetof(VcardObjectIo, RangeStream) == 96 && sizeof(VcardObjectIo) == 112);

namespace {

constexpr uint32_t kBase64 = 2;
constexpr int32_t kNoObject = -4;

// Calls the same slot of the decoding object.
template <auto Slot, typename... Arguments>
int32_t Forward(VcardIo *object, Arguments... arguments) {
  if (object == nullptr) return kNoObject;
  VcardIo *decodeStream = reinterpret_cast<VcardObjectIo *>(object)->DecodeStream;
  return (decodeStream->*Slot)(decodeStream, arguments...);
}

// Opens both objects. Answers false, with nothing left open, on failure.
bool OpenPair(VcardIo *io, uint64_t start, uint64_t length, VcardObjectIo *object) {
  VcardRangeSpec range = {io, static_cast<uint32_t>(start), static_cast<uint32_t>(length)};
  const auto open = io->Open;
  if (open(&object->RangeStream, VcardIoOpenRange, &range, VcardIoOpenFlags) != 0) return false;
  VcardDecodeSpec decode = {object->RangeStream, 0, kBase64, {}};
  if (open(&object->DecodeStream, VcardIoOpenDecode, &decode, VcardIoOpenFlags) != 0) {
    object->RangeStream->Close(object->RangeStream);
    return false;
  }
  return true;
}

}  // namespace

int32_t VwDoSpecial(VcardStream *stream, uint64_t start, VcardIo **out, uint64_t length, uint64_t,
                    uint32_t kind) {
  if (start == 0 || length == 0 || kind != kBase64) return -1;
  const uintptr_t handle = SYSNativeAlloc(sizeof(VcardObjectIo));
  if (handle == 0) return -1;
  auto *object = reinterpret_cast<VcardObjectIo *>(handle);
  *object = {};
  *out = &object->Slots;
  if (!OpenPair(stream->Io, start, length, object)) {
    SYSNativeFree(handle);
    *out = nullptr;
    return -1;
  }
  object->Slots = {DoCloseVCRD,
                   DoReadVCRD,
                   DoWriteVCRD,
                   DoSeekVCRD,
                   DoTellVCRD,
                   DoGetInfoVCRD,
                   object->DecodeStream->Open,
                   DoSeek64VCRD,
                   DoTell64VCRD};
  return 0;
}

int32_t DoCloseVCRD(VcardIo *object) {
  if (object == nullptr) return kNoObject;
  auto *pair = reinterpret_cast<VcardObjectIo *>(object);
  object->Close = nullptr;
  object->Read = nullptr;
  object->Write = nullptr;
  object->Seek = nullptr;
  object->Tell = nullptr;
  object->GetInfo = nullptr;
  object->Open = nullptr;
  if (pair->DecodeStream != nullptr) pair->DecodeStream->Close(pair->DecodeStream);
  if (pair->RangeStream != nullptr) pair->RangeStream->Close(pair->RangeStream);
  SYSNativeFree(reinterpret_cast<uintptr_t>(pair));
  return 0;
}

int32_t DoReadVCRD(VcardIo *object, void *to, uint32_t size, uint32_t *count) {
  return Forward<&VcardIo::Read>(object, to, size, count);
}

int32_t DoWriteVCRD(VcardIo *object, uint64_t a, uint64_t b, uint64_t c) {
  return Forward<&VcardIo::Write>(object, a, b, c);
}

int32_t DoSeekVCRD(VcardIo *object, uint16_t whence, uint64_t position) {
  return Forward<&VcardIo::Seek>(object, whence, position);
}

int32_t DoTellVCRD(VcardIo *object, uint32_t *position) {
  return Forward<&VcardIo::Tell>(object, position);
}

int32_t DoGetInfoVCRD(VcardIo *object, uint32_t selector, void *argument) {
  return Forward<&VcardIo::GetInfo>(object, selector, argument);
}

int32_t DoSeek64VCRD(VcardIo *object, uint16_t whence, int64_t position) {
  return Forward<&VcardIo::Seek64>(object, whence, position);
}

int32_t DoTell64VCRD(VcardIo *object, int64_t *position) {
  return Forward<&VcardIo::Tell64>(object, position);
}

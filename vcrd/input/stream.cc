#include "vcrd/input/stream.h"

#include <climits>
#include <cstdlib>

#include "px/util.h"
#include "vcrd/frame/vcard_data.h"

namespace {

// Where every input ends: behind it a position has more than 32 bits and would begin at 0 again, so
// that a search would never end. The last one with 32 bits is kNoPosition and has no byte either.
constexpr int64_t kInputEnd = kNoPosition;

// The size of a stream's buffer in bytes.
uint64_t BufferSize() {
  uint32_t value[4] = {};
  uint32_t size = sizeof value;
  if (UTGetGlobalOption(UTOptionInputBuffer, value, &size) != 0) return 2048;
  return uint64_t{value[0]} * 1024;
}

// Puts the CR behind the bytes that were read.
void EndBuffer(VcardStream *stream) {
  stream->Buffer[stream->Ptr - stream->Buffer + stream->Remaining] = '\r';
}

VcardStream *NewStream(VcardIo *io) {
  const uint64_t size = BufferSize();
  if (size > INT32_MAX) return nullptr;  // more than Remaining can count
  auto *stream = static_cast<VcardStream *>(std::calloc(1, sizeof(VcardStream)));
  if (stream == nullptr) return nullptr;
  stream->Buffer = static_cast<uint8_t *>(std::calloc(1, size + kBufferPadding));
  if (stream->Buffer == nullptr) {
    std::free(stream);
    return nullptr;
  }
  stream->Ptr = stream->Buffer;
  stream->Io = io;
  stream->Size = static_cast<uint32_t>(size);
  EndBuffer(stream);
  return stream;
}

// Puts the host's object where the next bytes are wanted. Answers false on failure.
bool MoveObjectToBase(const VcardStream *stream) {
  VcardIo *io = stream->Io;
  const bool wide = io->GetInfo(io, VcardIoInfoWide, nullptr) == 0 && io->Seek64 != nullptr &&
                    io->Tell64 != nullptr;
  if (wide) {
    int64_t position = 0;
    io->Tell64(io, &position);
    return position == stream->Base || io->Seek64(io, 0, stream->Base) == 0;
  }
  uint32_t position = 0;
  io->Tell(io, &position);
  return position == stream->Base || io->Seek(io, 0, static_cast<uint64_t>(stream->Base)) == 0;
}

}  // namespace

void VwLocalUp(VcardIo *io, VcardStream **stream, VcardData *data) {
  *stream = NewStream(io);
  for (SoRoutine &routine : data->Routine) routine = reinterpret_cast<SoRoutine>(SODummy);
}

void VwLocalDown(VcardStream *stream, VcardIo **io) {
  *io = stream->Io;
  std::free(stream->Buffer);
  std::free(stream);
}

int32_t VcardStreamFill(VcardStream *stream) {
  stream->Base += stream->Count;
  const bool good = MoveObjectToBase(stream) &&
                    stream->Io->Read(stream->Io, stream->Buffer, stream->Size, &stream->Count) == 0;
  if (!good) stream->Count = 0;  // Base stays, so the next refill asks for the same position
  const int64_t room = kInputEnd - stream->Base;
  if (stream->Count > room) stream->Count = static_cast<uint32_t>(room);
  stream->Ptr = stream->Buffer + 1;
  stream->Remaining = stream->Count == 0 ? 0 : static_cast<int32_t>(stream->Count - 1);
  EndBuffer(stream);
  return stream->Count == 0 ? -1 : stream->Buffer[0];
}

int32_t VcardStreamSeek(VcardStream *stream, uint32_t position) {
  const int64_t wanted = position;
  if (wanted >= stream->Base && wanted < stream->Base + stream->Count) {
    stream->Remaining = static_cast<int32_t>(stream->Base + stream->Count - wanted);
    stream->Ptr = stream->Buffer + (stream->Count - static_cast<uint32_t>(stream->Remaining));
    return 0;
  }
  stream->Remaining = 0;
  stream->Count = 0;
  EndBuffer(stream);
  const int32_t failed = stream->Io->Seek(stream->Io, 0, position);
  stream->Base = wanted;
  return failed == 0 ? 0 : -1;
}

int32_t VwStreamTell(uint64_t, VcardData *data) {
  data->SavedPos = VcardStreamPosition(data->Stream);
  return 0;
}

int32_t VwStreamSeek(uint64_t, VcardData *data) {
  return VcardStreamSeek(data->Stream, data->SavedPos);
}

#include "host/io/open_io.h"

#include <new>

#include "host/io/base64_io.h"
#include "host/io/range_io.h"

namespace px {

int32_t openIo(VcardIo **result, uint32_t type, void *record, uint32_t /*flags*/) noexcept {
  if (!result || !record) return IoFailed;
  VcardIo *io = nullptr;
  if (type == VcardIoOpenRange) {
    const auto *range = static_cast<const VcardRangeSpec *>(record);
    const bool reachable = range->Length <= INT64_MAX && range->Start <= INT64_MAX - range->Length;
    if (range->Io && reachable) {
      io = new (std::nothrow) RangeIo(range->Io, range->Start, range->Length);
    }
  } else if (type == VcardIoOpenDecode) {
    const auto *decode = static_cast<const VcardDecodeSpec *>(record);
    constexpr uint32_t KindBase64 = 2;
    if (decode->Source && decode->Kind == KindBase64) {
      io = new (std::nothrow) Base64Io(decode->Source);
    }
  }
  if (!io) return IoFailed;
  *result = io;
  return 0;
}

int32_t readIoAt(VcardIo *io, uint64_t position, void *to, uint32_t size,
                 uint32_t *count) noexcept {
  const bool wide = io->Seek64 && io->GetInfo(io, VcardIoInfoWide, nullptr) == 0;
  const int32_t result =
      wide ? io->Seek64(io, 0, static_cast<int64_t>(position)) : io->Seek(io, 0, position);
  return result == 0 ? io->Read(io, to, size, count) : result;
}

}  // namespace px

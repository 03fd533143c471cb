// The common part of the host's I/O objects: a position, and the nine slots on top of it.
//
// An object of type T derives from PositionedIo<T> and needs one member,
//
//     int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);
//
// which stores what stands at `position`, and answers, as slot Read does; `*count` is 0 before the
// call. The other members below can be hidden by T's own. All objects are read-only, seekable from
// their start, and have the 64-bit slots. No member may throw: the filter calls them.

#ifndef PX_HOST_IO_POSITIONED_IO_H
#define PX_HOST_IO_POSITIONED_IO_H

#include <cstdint>

#include "host/io/open_io.h"
#include "px/vcard_io.h"

namespace px {

constexpr int32_t IoFailed = -1;

template <class T>
class PositionedIo : public VcardIo {
 public:
  PositionedIo(const PositionedIo &) = delete;
  PositionedIo &operator=(const PositionedIo &) = delete;

  int32_t close() { return 0; }

  int32_t read(void *to, uint32_t size, uint32_t *count) {
    *count = 0;
    const int32_t result = self(this)->readAt(position_, to, size, count);
    if (result == 0) position_ += *count;
    return result;
  }

  // `wide` tells that a 64-bit slot was called.
  int32_t seek(uint64_t position, bool /*wide*/) {
    if (position > INT64_MAX) return IoFailed;
    position_ = position;
    return 0;
  }

  int32_t tell(uint64_t *position, bool /*wide*/) {
    *position = position_;
    return 0;
  }

  int32_t getInfo(uint32_t selector, void * /*argument*/) {
    return selector == VcardIoInfoWide ? 0 : IoFailed;
  }

 protected:
  PositionedIo() : VcardIo{} {
    Close = [](VcardIo *io) noexcept { return self(io)->close(); };
    Read = [](VcardIo *io, void *to, uint32_t size, uint32_t *count) noexcept {
      return self(io)->read(to, size, count);
    };
    Write = [](VcardIo *, uint64_t, uint64_t, uint64_t) noexcept { return IoFailed; };
    Seek = [](VcardIo *io, uint16_t whence, uint64_t position) noexcept {
      return whence == 0 ? self(io)->seek(position, false) : IoFailed;
    };
    Tell = [](VcardIo *io, uint32_t *position) noexcept {
      uint64_t told = 0;
      if (self(io)->tell(&told, false) != 0 || told > UINT32_MAX) return IoFailed;
      *position = static_cast<uint32_t>(told);
      return 0;
    };
    GetInfo = [](VcardIo *io, uint32_t selector, void *argument) noexcept {
      return self(io)->getInfo(selector, argument);
    };
    Open = openIo;
    Seek64 = [](VcardIo *io, uint16_t whence, int64_t position) noexcept {
      // A negative position turns into one that seek refuses.
      return whence == 0 ? self(io)->seek(static_cast<uint64_t>(position), true) : IoFailed;
    };
    Tell64 = [](VcardIo *io, int64_t *position) noexcept {
      uint64_t told = 0;
      const int32_t result = self(io)->tell(&told, true);
      if (result == 0) *position = static_cast<int64_t>(told);
      return result;
    };
  }
  ~PositionedIo() = default;

 private:
  static T *self(VcardIo *io) { return static_cast<T *>(io); }

  uint64_t position_ = 0;
};

}  // namespace px

#endif

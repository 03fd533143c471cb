// A stretch of another object as an object of its own.

#ifndef PX_HOST_IO_RANGE_IO_H
#define PX_HOST_IO_RANGE_IO_H

#include <cstdint>

#include "host/io/positioned_io.h"

namespace px {

// Made by openIo, freed by its slot Close. It moves the source before each read and doesn't take it
// back, so any number of ranges, and the filter, can use one source in turns.
class RangeIo final : public PositionedIo<RangeIo> {
 public:
  // `source` isn't owned. The range can reach past its end and is shorter then.
  RangeIo(VcardIo *source, uint64_t start, uint64_t length)
      : source_(source), start_(start), length_(length) {}

  int32_t close();
  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);

 private:
  VcardIo *source_;
  uint64_t start_, length_;
};

}  // namespace px

#endif

// How much work a file may cost.
//
// There are files that are small and make their reader go over the same bytes, or give out the same
// line, again and again. The work is counted in bytes that an I/O object delivers and in calls that
// the filter makes, one for each character. It may be so many times what has been read of the file
// so far; past that the input ends. docs/limits.md tells the bounds and which files reach them.

#ifndef PX_HOST_IO_LIMITED_IO_H
#define PX_HOST_IO_LIMITED_IO_H

#include <cstdint>
#include <optional>

#include "host/io/positioned_io.h"

namespace px {

// The account of one file.
class WorkLimit {
 public:
  static constexpr uint64_t Free = 8U << 20;  // that any file may cost
  static constexpr uint64_t PerByte = 32;  // what each of its bytes adds

  // `on` false: the work is counted, and no work is too much.
  explicit WorkLimit(bool on = true) : on_(on) {}

  void noteCalls(uint64_t calls) { calls_ += calls; }
  void noteReached(uint64_t position) {
    if (position > reached_) reached_ = position;
  }

  // Whether as much work is allowed where `reached` bytes have been read.
  bool allows(uint64_t work, uint64_t reached) const {
    return !on_ || work <= Free + PerByte * reached;
  }
  bool allowsCalls() const { return allows(calls_, reached_); }

  // Notes that the input ended at this position of the file. The first time counts. Who reads asks
  // behind the end, as of what has failed a read.
  void stop(uint64_t position) {
    if (!stoppedAt_) stoppedAt_ = position;
  }

  uint64_t calls() const { return calls_; }
  const std::optional<uint64_t> &stoppedAt() const { return stoppedAt_; }

 private:
  const bool on_;
  uint64_t calls_ = 0;
  uint64_t reached_ = 0;  // of the file, in bytes
  std::optional<uint64_t> stoppedAt_;
};

// What becomes of a read past the limit.
enum class PastLimit {
  Ends,   // nothing is left: for one who then makes do with what was read
  Fails,  // for the filter, to which that is an end as well, and for objects that it opens: half of
          // one is none
};

// Another object, with what it delivers counted. Belongs to who made it; slot Close does nothing.
class LimitedIo final : public PositionedIo<LimitedIo> {
 public:
  // Neither is owned. Each object has `limit` for itself.
  LimitedIo(VcardIo *source, const WorkLimit *limit, PastLimit past)
      : source_(source), limit_(*limit), past_(past) {}

  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);

  uint64_t delivered() const { return delivered_; }  // in bytes
  uint64_t reached() const { return reached_; }      // the highest position behind a read
  const std::optional<uint64_t> &refusedAt() const { return refusedAt_; }

 private:
  VcardIo *source_;
  const WorkLimit &limit_;
  const PastLimit past_;
  uint64_t delivered_ = 0;
  uint64_t reached_ = 0;
  std::optional<uint64_t> refusedAt_;
};

}  // namespace px

#endif

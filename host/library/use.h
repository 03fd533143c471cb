// Who uses a reader: one thread at a time, and within an event's call the same thread again for
// what may be called there. Nobody does while the caller's I/O object runs: what is being read
// can't be closed, nor read from another place.

#ifndef PX_HOST_LIBRARY_USE_H
#define PX_HOST_LIBRARY_USE_H

#include <atomic>
#include <thread>

namespace px {

class InUse {
 public:
  // Answers false when anybody uses it, this thread included.
  bool begin() {
    std::thread::id nobody;
    return !shut_.load(std::memory_order_relaxed) &&
           user_.compare_exchange_strong(nobody, std::this_thread::get_id(),
                                         std::memory_order_acquire, std::memory_order_relaxed);
  }
  void end() { user_.store({}, std::memory_order_release); }

  bool byThisThread() const {
    return !shut_.load(std::memory_order_relaxed) &&
           user_.load(std::memory_order_relaxed) == std::this_thread::get_id();
  }

  // Lets nobody in, or again whom it did. Answers what held before.
  bool shut(bool shut) { return shut_.exchange(shut, std::memory_order_relaxed); }

 private:
  std::atomic<std::thread::id> user_{};
  std::atomic<bool> shut_ = false;
};

}  // namespace px

#endif

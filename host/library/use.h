// Who uses a reader: one thread at a time, and within an event's call the same thread again for
// what may be called there.

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
    return user_.compare_exchange_strong(nobody, std::this_thread::get_id(),
                                         std::memory_order_acquire, std::memory_order_relaxed);
  }
  void end() { user_.store({}, std::memory_order_release); }

  bool byThisThread() const {
    return user_.load(std::memory_order_relaxed) == std::this_thread::get_id();
  }

 private:
  std::atomic<std::thread::id> user_{};
};

}  // namespace px

#endif

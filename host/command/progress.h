// How far the work on the files is, on a terminal, when it takes longer than a moment.

#ifndef PX_HOST_COMMAND_PROGRESS_H
#define PX_HOST_COMMAND_PROGRESS_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

#include "host/command/options.h"

namespace px {

class Progress {
 public:
  // `options` isn't owned. Not `shown`: the counters only.
  Progress(const Options &options, bool shown);
  ~Progress();  // erases the line
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  // Counters that the work adds to, from any thread.
  std::atomic<uint64_t> bytes = 0;  // read
  std::atomic<uint64_t> files = 0;  // done

 private:
  using Clock = std::chrono::steady_clock;
  struct Amount {
    uint64_t files = 0;
    uint64_t bytes = 0;
    bool known = false;
  };

  void run();
  bool waitForEnd(Clock::duration time);
  Amount measure();
  std::string line(const Amount &all) const;

  const Options &options_;
  const Clock::time_point start_ = Clock::now();
  std::mutex mutex_;
  std::condition_variable end_;
  std::atomic<bool> ended_ = false;
  std::thread thread_;
};

}  // namespace px

#endif

#include "host/command/jobs.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace px {
namespace {

constexpr size_t kAhead = 4;  // files for each thread

struct Slot {
  explicit Slot(const std::atomic<bool> *stopped) : output(stopped) {}

  Input input;
  HeldOutput output;
  ExitCode code = ExitGood;
  bool done = false;
  std::exception_ptr failure;  // of the work itself, not of its file
};

class Crew {
 public:
  Crew(uint32_t size, const WorkOnFile &work) : work_(work) {
    try {
      for (uint32_t i = 0; i < size; ++i) threads_.emplace_back([this] { run(); });
    } catch (...) {
      // As many as the system allows do the work.
      if (threads_.empty()) throw;
    }
  }
  ~Crew() {
    stopped_ = true;
    { const std::lock_guard lock(mutex_); }
    toDo_.notify_all();
    for (std::thread &thread : threads_) thread.join();
  }
  Crew(const Crew &) = delete;
  Crew &operator=(const Crew &) = delete;

  size_t waiting() const { return slots_.size(); }

  void add(Input input) {
    const std::lock_guard lock(mutex_);
    slots_.emplace_back(&stopped_).input = std::move(input);
    toDo_.notify_one();
  }

  // Waits for the first file and gives it to `output`.
  ExitCode deliverFirst(DirectOutput *output) {
    std::unique_lock lock(mutex_);
    Slot &first = slots_.front();
    done_.wait(lock, [&] { return first.done; });
    lock.unlock();
    if (first.failure) std::rethrow_exception(first.failure);
    output->beginFile();
    first.output.deliver(output);
    const ExitCode code = first.code;
    lock.lock();
    slots_.pop_front();
    --next_;
    return code;
  }

 private:
  void run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      toDo_.wait(lock, [this] { return stopped_ || next_ < slots_.size(); });
      if (stopped_) return;
      Slot &slot = slots_[next_++];  // a deque's elements stay where they are
      lock.unlock();
      try {
        slot.code = work_(slot.input, &slot.output);
      } catch (const HeldOutput::Stopped &) {
      } catch (...) {
        slot.failure = std::current_exception();
      }
      lock.lock();
      slot.done = true;
      if (&slot == &slots_.front()) done_.notify_one();
    }
  }

  const WorkOnFile &work_;
  std::mutex mutex_;
  std::condition_variable toDo_, done_;
  std::deque<Slot> slots_;
  size_t next_ = 0;  // slot that no thread has taken yet
  std::atomic<bool> stopped_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace

ExitCode runFiles(InputList *inputs, uint32_t jobs, const WorkOnFile &work, DirectOutput *output) {
  ExitCode worst = ExitGood;
  const auto add = [&worst](ExitCode code) { worst = std::max(worst, code); };
  Input input;
  if (jobs == 1) {
    while (inputs->next(&input)) {
      output->beginFile();
      add(work(input, output));
    }
    return worst;
  }
  Crew crew(jobs, work);
  while (inputs->next(&input)) {
    if (crew.waiting() == jobs * kAhead) add(crew.deliverFirst(output));
    crew.add(std::move(input));
  }
  while (crew.waiting() > 0) add(crew.deliverFirst(output));
  return worst;
}

}  // namespace px

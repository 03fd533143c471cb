// A reader of libpx_cards for the command: errors are thrown, and so is what the command's own
// routines throw while the library calls them, which lets no exception through.

#ifndef PX_HOST_COMMAND_CARD_READER_H
#define PX_HOST_COMMAND_CARD_READER_H

#include <cstdint>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string_view>

#include "px/cards.h"

namespace px {

// An error that the library has answered. Its text is English.
struct CardError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class CardReader {
 public:
  CardReader();  // it speaks the program's language
  ~CardReader() { PxFreeReader(&reader_); }
  CardReader(const CardReader &) = delete;
  CardReader &operator=(const CardReader &) = delete;

  PxReader *get() const { return reader_; }

  // Where go what a routine writes, and faults with their lines.
  void setWrite(std::function<void(std::string_view)> write) { write_ = std::move(write); }
  void setFault(std::function<void(uint64_t, const char *)> fault);

  // What a routine with a sink is given, and with it this object.
  static int32_t sink(void *self, const char *bytes, uint64_t size);

  // Runs what the library calls. Answers as a sink does: another value than 0 when it has thrown,
  // or something has before.
  template <class Step>
  int32_t run(Step step) noexcept {
    if (thrown_) return 1;
    try {
      step();
      return 0;
    } catch (...) {
      thrown_ = std::current_exception();
      return 1;
    }
  }

  // Answers whether a routine's answer is PxGood. Throws what was thrown during it, and CardError
  // for an error.
  bool check(int32_t answer);

 private:
  PxReader *reader_;
  std::function<void(std::string_view)> write_;
  std::function<void(uint64_t, const char *)> fault_;
  std::exception_ptr thrown_;
};

}  // namespace px

#endif

// The results of the C interface, and how an exception becomes one.

#ifndef PX_HOST_LIBRARY_RESULT_H
#define PX_HOST_LIBRARY_RESULT_H

#include <cstdint>
#include <stdexcept>
#include <string>

#include "px/cards.h"

namespace px {

// An error that knows its result, and its errno where it has one.
struct Failure : std::runtime_error {
  Failure(int32_t code, const std::string &text, int errorNumber = 0)
      : std::runtime_error(text), result(code), number(errorNumber) {}
  explicit Failure(int32_t code) : Failure(code, PxResultText(code)) {}
  const int32_t result;
  const int number;
};

// What the system calls an error. Its own texts follow the program's locale; this one is English.
std::string systemText(int error);

// Answers the result of the exception that is being handled, and sets its errno, or 0, and its
// text, as far as there is memory for it. What carries no result of its own is `otherwise`.
int32_t resultOfException(int32_t otherwise, int *number, std::string *text) noexcept;

}  // namespace px

#endif

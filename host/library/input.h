// What a reader has open: a file, memory, or the caller's I/O object.

#ifndef PX_HOST_LIBRARY_INPUT_H
#define PX_HOST_LIBRARY_INPUT_H

#include <memory>

#include "host/library/use.h"
#include "px/vcard_io.h"

namespace px {

class Input {
 public:
  virtual ~Input() = default;

  virtual VcardIo *io() = 0;

  // Throws std::runtime_error, whose text is for a person, when a read has failed. The filter takes
  // a failure for the end of the input.
  virtual void check() const = 0;
};

// Each throws the exceptions of its reading: std::system_error for a file.
std::unique_ptr<Input> openFileInput(const char *path);
std::unique_ptr<Input> openMemoryInput(const void *bytes, uint64_t size);
std::unique_ptr<Input> openCallerInput(VcardIo *io, InUse *use);  // see CallerIo

}  // namespace px

#endif

// The decoded bytes of another object that holds Base64 text.
//
// Blanks, tabs and line ends in the text are passed over. "=" ends the data, and so does a byte
// that is no Base64. The last byte of the source, where it stands at the head of a line, is no
// data either: the filter's ranges reach one byte further than the text, and that byte begins the
// next content line. Bits at the end that make no whole byte are dropped.

#ifndef PX_HOST_IO_BASE64_IO_H
#define PX_HOST_IO_BASE64_IO_H

#include <nettle/base64.h>

#include <cstdint>

#include "host/io/positioned_io.h"

namespace px {

// The byte that ended the data and is no Base64.
struct BadBase64Byte {
  bool found = false;
  uint8_t byte = 0;
  uint64_t position = 0;  // in the source, in bytes
};

// A selector of GetInfo, above those of the interface: stores a BadBase64Byte.
constexpr uint32_t InfoBadBase64Byte = 0x10000;

// Asks what has been met so far in the content of `object`: a Base64Io, or an object of
// VwDoSpecial, which hands the question on to its Base64Io. Of any other object nothing is found.
BadBase64Byte badBase64Byte(VcardIo *object);

// Made by openIo, freed by its slot Close. Reading goes forward; moving back decodes again from the
// start, so memory stays constant.
class Base64Io final : public PositionedIo<Base64Io> {
 public:
  // `source` isn't owned.
  explicit Base64Io(VcardIo *source);

  int32_t close();
  int32_t readAt(uint64_t position, void *to, uint32_t size, uint32_t *count);
  int32_t getInfo(uint32_t selector, void *argument);

 private:
  enum class Step { Byte, End, Failure };

  void restart();
  int32_t fill();
  Step decode(uint8_t *byte);
  uint32_t decodeGroups(uint8_t *to, uint32_t size);

  VcardIo *source_;
  base64_decode_ctx context_;
  uint32_t taken_;    // characters of the data, as it counts groups of four
  uint64_t decoded_;  // bytes given since the start
  bool ended_;
  bool atLineHead_;  // the last byte taken was a line end
  BadBase64Byte bad_;

  uint64_t sourceEnd_;  // position in the source behind the buffer
  uint32_t next_, filled_;
  uint8_t buffer_[2048] = {};
};

}  // namespace px

#endif

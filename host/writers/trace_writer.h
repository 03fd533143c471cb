// The trace: every call that the filter makes, as one line of text.
//
//     SoBeginDefinition(0xA008001C, 0, {28, 0, 0, 0, 0xFFFFFFFF, 0xFFFFFFFF, 0})
//     SoUseStyle(4)
//     SoSetCharset(0x30100)
//     SoEmitChar('R')
//     SoEmitChar(0x20AC)
//     SoEmitBreak(1, 0)
//
// The user values are left out. Records stand in braces as all their 32-bit values in order.
// Numbers are decimal; type codes, character sets and 0xFFFFFFFF in a record are hexadecimal, and
// so are characters, but for printable ASCII other than the quote and the backslash.

#ifndef PX_HOST_WRITERS_TRACE_WRITER_H
#define PX_HOST_WRITERS_TRACE_WRITER_H

#include <functional>
#include <string>
#include <string_view>

#include "host/filter/output.h"

namespace px {

class TraceWriter : public Output {
 public:
  // `sink` takes each line, without a line end; the text is valid during the call.
  explicit TraceWriter(std::function<void(std::string_view line)> sink) : sink_(std::move(sink)) {}

  void emitChars(std::span<const uint16_t> codes, bool more) override;
  void emitSpecial(uint32_t kind) override;
  void setCharHeight(uint32_t height) override;
  void addTabStop(const VcardTabStop &tab) override;
  bool emitBreak(uint32_t kind, uint32_t zero) override;
  void beginSection(uint32_t a, uint32_t b, uint32_t c) override;
  void emitObject(const VcardObjectRecord &object) override;
  void beginDefinition(uint32_t type, uint32_t id, const void *record) override;
  void endDefinition(uint32_t type, uint32_t id) override;
  void routine88(uint32_t a, uint32_t b) override;
  void routine89(uint32_t a, uint32_t b) override;
  void setCharset(uint32_t set) override;
  uint32_t getObjectBase() override;
  void emitResourceString(uint32_t id) override;
  void useStyle(uint32_t id) override;
  void setAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t d) override;
  void setObjectData(uint32_t selector, uint64_t a, uint64_t b) override;
  void commitObjectData() override;

 private:
  template <class... Arguments>
  void write(std::string_view routine, const Arguments &...arguments);

  std::function<void(std::string_view)> sink_;
  std::string line_;
};

}  // namespace px

#endif

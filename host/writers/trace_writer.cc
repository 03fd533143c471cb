#include "host/writers/trace_writer.h"

#include <charconv>
#include <cstring>

namespace px {
namespace {

// The three ways to write an argument that isn't a decimal number.
struct Hex {
  uint32_t value;
};
struct Character {
  uint16_t code;
};
struct Record {
  const void *values;  // of 32 bits each
  size_t size;         // in bytes
};

void append(std::string &line, uint64_t value, int base = 10) {
  char digits[20];
  const auto end = std::to_chars(digits, digits + sizeof digits, value, base).ptr;
  line.append(digits, end);
}

void append(std::string &line, Hex hex) {
  char digits[8] = {};
  const auto end = std::to_chars(digits, digits + sizeof digits, hex.value, 16).ptr;
  line += "0x";
  for (const char *digit = digits; digit < end; ++digit) {
    line += *digit >= 'a' ? static_cast<char>(*digit - 'a' + 'A') : *digit;
  }
}

void append(std::string &line, Character character) {
  const uint16_t code = character.code;
  if (code < 0x20 || code > 0x7E || code == '\'' || code == '\\') return append(line, Hex{code});
  line += '\'';
  line += static_cast<char>(code);
  line += '\'';
}

void append(std::string &line, Record record) {
  const auto *bytes = static_cast<const char *>(record.values);
  line += '{';
  for (size_t offset = 0; offset < record.size; offset += sizeof(uint32_t)) {
    uint32_t value;
    std::memcpy(&value, bytes + offset, sizeof value);
    if (offset > 0) line += ", ";
    if (value == UINT32_MAX) {
      append(line, Hex{value});
    } else {
      append(line, value);
    }
  }
  line += '}';
}

}  // namespace

template <class... Arguments>
void TraceWriter::write(std::string_view routine, const Arguments &...arguments) {
  line_ = routine;
  line_ += '(';
  [[maybe_unused]] const char *separator = "";
  ((line_ += separator, append(line_, arguments), separator = ", "), ...);
  line_ += ')';
  sink_(line_);
}

void TraceWriter::emitChars(std::span<const uint16_t> codes, bool) {
  for (const uint16_t code : codes) write("SoEmitChar", Character{code});
}

void TraceWriter::emitSpecial(uint32_t kind) { write("SoEmitSpecial", kind); }

void TraceWriter::setCharHeight(uint32_t height) { write("SoSetCharHeight", height); }

void TraceWriter::addTabStop(const VcardTabStop &tab) {
  write("SoAddTabStop", Record{&tab, sizeof tab});
}

bool TraceWriter::emitBreak(uint32_t kind, uint32_t zero) {
  write("SoEmitBreak", kind, zero);
  return false;
}

void TraceWriter::beginSection(uint32_t a, uint32_t b, uint32_t c) {
  write("SoBeginSection", a, b, c);
}

void TraceWriter::emitObject(const VcardObjectRecord &object) {
  write("SoEmitObject", Record{&object, sizeof object});
}

void TraceWriter::beginDefinition(uint32_t type, uint32_t id, const void *record) {
  write("SoBeginDefinition", Hex{type}, id, Record{record, type & 0xFFFF});
}

void TraceWriter::endDefinition(uint32_t type, uint32_t id) {
  write("SoEndDefinition", Hex{type}, id);
}

void TraceWriter::routine88(uint32_t a, uint32_t b) { write("SoRoutine88", a, b); }

void TraceWriter::routine89(uint32_t a, uint32_t b) { write("SoRoutine89", a, b); }

void TraceWriter::setCharset(uint32_t set) { write("SoSetCharset", Hex{set}); }

uint32_t TraceWriter::getObjectBase() {
  write("SoGetObjectBase");
  return 0;
}

void TraceWriter::emitResourceString(uint32_t id) { write("SoEmitResourceString", id); }

void TraceWriter::useStyle(uint32_t id) { write("SoUseStyle", id); }

void TraceWriter::setAttribute(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
  write("SoSetAttribute", a, b, c, d);
}

void TraceWriter::setObjectData(uint32_t selector, uint64_t a, uint64_t b) {
  write("SoSetObjectData", selector, a, b);
}

void TraceWriter::commitObjectData() { write("SoCommitObjectData"); }

}  // namespace px

#include "host/writers/line_writer.h"

#include "host/source/utf8.h"

namespace px {
namespace {

constexpr size_t kMaxHeld = 8192;

}  // namespace

void LineWriter::write(std::string_view utf8) {
  held_ += utf8;
  column_ += columnCount(utf8);
  if (held_.size() >= kMaxHeld) flush();
}

void LineWriter::padTo(uint32_t column) {
  while (column_ < column) write(" ");
}

void LineWriter::endLine() {
  if (column_ == 0) return;
  held_ += '\n';
  column_ = 0;
}

void LineWriter::skipLine() {
  endLine();
  held_ += '\n';
  if (held_.size() >= kMaxHeld) flush();
}

void LineWriter::flush() {
  if (!held_.empty()) sink_(held_);
  held_.clear();
}

}  // namespace px

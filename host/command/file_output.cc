#include "host/command/file_output.h"

#include <algorithm>

#include "host/command/messages.h"

namespace px {
namespace {

// Before a complaint: how many bytes had been written, and how long it is.
struct Mark {
  uint64_t position;
  uint64_t length;
};

}  // namespace

void DirectOutput::write(std::string_view bytes) {
  if (bytes.empty()) return;
  if (!wroteFile_ && wroteAny_) out_.write(frame_.between);
  wroteFile_ = wroteAny_ = true;
  out_.write(bytes);
}

void DirectOutput::complain(std::string_view text) {
  if (quiet_) return;
  out_.flush();  // on a terminal, what was shown stands above its error
  px::complain(text);
}

void DirectOutput::end() {
  out_.write(frame_.tail);
  out_.flush();
}

void HeldOutput::write(std::string_view bytes) {
  if (stopped_) throw Stopped();
  bytes_.append(bytes);
}

void HeldOutput::complain(std::string_view text) {
  const Mark mark = {bytes_.size(), text.size()};
  complaints_.append({reinterpret_cast<const char *>(&mark), sizeof mark});
  complaints_.append(text);
}

void HeldOutput::deliver(FileOutput *to) const {
  char buffer[16 * 1024];
  uint64_t position = 0;
  const auto writeUpTo = [&](uint64_t end) {
    while (position < end) {
      const auto wanted = static_cast<size_t>(std::min<uint64_t>(sizeof buffer, end - position));
      const size_t count = bytes_.readAt(position, buffer, wanted);
      to->write({buffer, count});
      position += count;
    }
  };
  for (uint64_t at = 0; at < complaints_.size();) {
    Mark mark;
    at += complaints_.readAt(at, &mark, sizeof mark);
    std::string text(static_cast<size_t>(mark.length), '\0');
    at += complaints_.readAt(at, text.data(), text.size());
    writeUpTo(mark.position);
    to->complain(text);
  }
  writeUpTo(bytes_.size());
}

}  // namespace px

#include "host/command/messages.h"

#include <cstdio>
#include <mutex>
#include <vector>

#include "host/languages/translation.h"
#include "host/reading/character_decoder.h"
#include "host/source/utf8.h"

namespace px {
namespace {

struct ErrorScreen {
  std::mutex mutex;
  std::string status;

  void write(std::string_view bytes) { std::fwrite(bytes.data(), 1, bytes.size(), stderr); }
};

ErrorScreen &screen() {
  static ErrorScreen one;
  return one;
}

constexpr std::string_view kErase = "\r\x1b[K";

}  // namespace

std::string printable(std::string_view text) {
  std::vector<uint16_t> codes;
  for (const char c : text) codes.push_back(static_cast<unsigned char>(c));
  CharacterDecoder decoder;
  std::string shown;
  appendPrintable(decoder.decode(codes), &shown);
  return shown;
}

std::string displayName(const std::string &file) {
  return file == "-" ? std::string(tr("standard input")) : printable(file);
}

void complain(std::string_view text) {
  const std::string line = "pxcard: " + printable(text) + "\n";
  ErrorScreen &to = screen();
  const std::lock_guard lock(to.mutex);
  to.write(to.status.empty() ? line : std::string(kErase) + line + to.status);
}

void showStatus(std::string_view line) {
  ErrorScreen &to = screen();
  const std::lock_guard lock(to.mutex);
  if (line.empty() && to.status.empty()) return;
  to.status = line;
  to.write(std::string(kErase) + to.status);
  std::fflush(stderr);
}

}  // namespace px

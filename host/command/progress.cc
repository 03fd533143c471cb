#include "host/command/progress.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "host/command/inputs.h"
#include "host/command/messages.h"
#include "host/languages/translation.h"
#include "host/writers/wrapped_lines.h"

namespace px {
namespace {

using namespace std::chrono_literals;

constexpr auto kMoment = 1s;
constexpr auto kStep = 200ms;

// "1.2 GB"
std::string amountText(double bytes) {
  constexpr std::array units = {"B", "kB", "MB", "GB", "TB"};
  size_t unit = 0;
  for (; bytes >= 999.5 && unit + 1 < units.size(); ++unit) bytes /= 1000;
  char text[32];
  std::snprintf(text, sizeof text, unit > 0 && bytes < 99.5 ? "%.1f %s" : "%.0f %s", bytes,
                units[unit]);
  return text;
}

// "0:35", "2:03:07"
std::string timeText(double seconds) {
  const auto all = static_cast<long>(std::min(std::ceil(seconds), 1e8));
  char text[48];
  if (all < 3600) {
    std::snprintf(text, sizeof text, "%ld:%02ld", all / 60, all % 60);
  } else {
    std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", all / 3600, all / 60 % 60, all % 60);
  }
  return text;
}

uint32_t screenWidth() {
  winsize window{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0;
  return known ? window.ws_col : 80;
}

}  // namespace

Progress::Progress(const Options &options, bool shown) : options_(options) {
  if (shown) thread_ = std::thread([this] { run(); });
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  end_.notify_one();
  thread_.join();
  showStatus("");
}

void Progress::run() {
  if (waitForEnd(kMoment)) return;
  const Amount all = measure();
  do {
    const std::string text = line(all);
    showStatus(text.substr(0, lengthWithin(text, screenWidth() - 1)));
  } while (!waitForEnd(kStep));
}

bool Progress::waitForEnd(Clock::duration time) {
  std::unique_lock lock(mutex_);
  return end_.wait_for(lock, time, [this] { return ended_.load(); });
}

// How much there is to do. What only shows itself while it is read, such as standard input, makes
// it unknown.
Progress::Amount Progress::measure() {
  InputList inputs(options_);
  if (!inputs.isRepeatable()) return {};
  Amount all;
  for (Input input; inputs.next(&input) && !ended_; ++all.files) {
    struct stat status;
    if (input.name == "-") return {};
    if (!input.fault.empty() || stat(input.name.c_str(), &status) != 0) continue;
    if (S_ISREG(status.st_mode)) {
      all.bytes += static_cast<uint64_t>(status.st_size);
    } else if (!S_ISDIR(status.st_mode)) {
      return {};
    }
  }
  all.known = true;
  return all;
}

std::string Progress::line(const Amount &all) const {
  const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
  const auto done = static_cast<double>(bytes.load());
  const double rate = done / seconds;
  const std::string doneFiles = std::to_string(files.load());
  std::string text;
  if (all.known) {
    const auto total = static_cast<double>(all.bytes);
    text = filled(tr("%1 of %2, %3 of %4 files"),
                  {amountText(done), amountText(total), doneFiles, std::to_string(all.files)});
  } else {
    text = filled(tr("%1, %2 files"), {amountText(done), doneFiles});
  }
  text += ", " + amountText(rate) + "/s";
  if (all.known && rate > 0 && bytes < all.bytes) {
    const double left = (static_cast<double>(all.bytes) - done) / rate;
    text += ", " + filled(tr("%1 left"), {timeText(left)});
  }
  return text;
}

}  // namespace px

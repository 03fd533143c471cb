#include "host/command/error_text.h"

#include <new>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "host/command/card_reader.h"
#include "host/languages/translation.h"

namespace px {
namespace {

// Texts that come from elsewhere: the system, the reader of files. Those that hold something of the
// file are patterns.
[[maybe_unused]] constexpr const char *kTexts[] = {
    N_("Bad file descriptor"),
    N_("Device or resource busy"),
    N_("Disk quota exceeded"),
    N_("File name too long"),
    N_("File too large"),
    N_("Input/output error"),
    N_("Is a directory"),
    N_("No such device or address"),
    N_("No space left on device"),
    N_("No such file or directory"),
    N_("Not a directory"),
    N_("Operation not permitted"),
    N_("Permission denied"),
    N_("Read-only file system"),
    N_("Too many levels of symbolic links"),
    N_("Too many open files"),

    N_("an embedded object can't be read"),
    N_("changed while it was read"),
    N_("cut short while it was read"),
    N_("not a vCard or vCalendar file"),
    N_("temporary file in TMPDIR or /tmp"),
    N_("is empty"),
    N_("the input can't be read"),

    N_("BEGIN of nothing"),
    N_("a quote in the line's head isn't closed"),
    N_("bytes in the line's head that are no text"),
    N_("bytes that are no text in the value's character set"),
    N_("continues the line before, but reads like a property: taken as one"),
    N_("nested too deep or too often: left out"),
    N_("no colon: not a property"),
    N_("text behind the end of the Base64 text"),
    N_("text outside of any card"),
    N_("the Base64 text ends within an escape"),
    N_("the file holds units that are no text in its character set"),
    N_("the line's head is too long: some of its parameters are cut or left out"),
    N_("the value is no Base64 text: shown as it stands"),
};

constexpr const char *kPatterns[] = {
    N_("%1 without END"),
    N_("END:%1 for %2"),
    N_("character set %1 is not known"),
    N_("more than %1 parameters: the others are left out"),
    N_("the Base64 text ends at a byte that is none, %1"),
};

// Answers what the pattern's %1 and %2 stand for in the text, unless it isn't made of the pattern.
std::optional<std::vector<std::string_view>> matched(std::string_view text,
                                                     std::string_view pattern) {
  std::vector<std::string_view> values;
  size_t mark;
  while ((mark = pattern.find('%')) != pattern.npos) {
    if (!text.starts_with(pattern.substr(0, mark))) return std::nullopt;
    text.remove_prefix(mark);
    pattern.remove_prefix(mark + 2);
    const std::string_view next = pattern.substr(0, pattern.find('%'));
    const size_t end = next.empty() ? text.size() : text.find(next);
    if (end == text.npos) return std::nullopt;
    values.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  if (text != pattern) return std::nullopt;
  return values;
}

}  // namespace

std::string errorText(const std::exception &error) {
  if (dynamic_cast<const std::bad_alloc *>(&error)) return std::string(tr("out of memory"));
  const std::string_view whole = error.what();
  if (const auto values = matched(whole, "more work than its size allows; stopped at byte %1")) {
    return filled(tr("more work than its size allows; stopped at byte %1 (--no-limit reads on)"),
                  {values->front()});
  }
  // "PLACE: MESSAGE", or the message alone.
  const auto *system = dynamic_cast<const std::system_error *>(&error);
  const size_t colon = dynamic_cast<const CardError *>(&error) ? whole.rfind(": ") : whole.npos;
  if (!system && colon == whole.npos) return std::string(tr(whole));
  const std::string message =
      system ? system->code().message() : std::string(whole.substr(colon + 2));
  const size_t place = whole.size() - std::min(whole.size(), message.size() + 2);
  const std::string where(tr(whole.substr(0, place)));
  return (where.empty() ? "" : where + ": ") + std::string(tr(message));
}

std::string faultText(const std::string &english) {
  for (const std::string_view pattern : kPatterns) {
    const auto values = matched(english, pattern);
    if (!values) continue;
    const auto value = [&](size_t i) { return i < values->size() ? (*values)[i] : ""; };
    return filled(tr(pattern), {value(0), value(1)});
  }
  return std::string(tr(english));
}

}  // namespace px

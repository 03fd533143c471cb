#include "tests/support/hostile_inputs.h"

#include <string_view>

namespace px::test {
namespace {

// `head`, then `piece` as often as it takes to come to `size`, then `tail`.
std::string filled(size_t size, std::string head, std::string_view piece, std::string_view tail) {
  head.reserve(size + tail.size());
  while (head.size() + piece.size() <= size) head += piece;
  return head += tail;
}

std::string nested(size_t size, std::string_view piece, std::string_view end) {
  std::string text = filled(size / 2, "", piece, "X:1\n");
  return filled(size, std::move(text), end, "");
}

// A long line of each kind that the summary shows, in the last of many cards whose END lines the
// pass that looks for the summary doesn't see.
std::string amplifier(size_t size) {
  const std::string value(size / 64, 'x');
  std::string tail = "BEGIN:VCARD\nN:a;\n";
  for (int i = 0; i < 10; ++i) tail += "TEL:" + value + "\nEMAIL:" + value + "\n";
  tail += "LABEL:" + value + "\nURL:" + value + "\nFN:" + value + "\nEND:VCARD\n";
  return filled(size - tail.size(), "", "BEGIN:VCARD\nN:a;\nEND:VCARD\n", tail);
}

}  // namespace

std::vector<HostileInput> hostileInputs(size_t size) {
  const std::string begin = "BEGIN:VCARD\nVERSION:2.1\n", end = "\nEND:VCARD\n";
  const std::string calendar = "BEGIN:VCALENDAR\n", calendarEnd = "END:VCALENDAR\n";
  const auto fill = [size](const std::string &head, std::string_view piece, std::string_view tail) {
    return filled(size, head, piece, tail);
  };
  return {
      {"missed END", fill("", "BEGIN:VCARD\nN:a;\nEND:VCARD\n", "")},
      {"missed END, soft break",
       fill("", "BEGIN:VCARD\nNOTE;QUOTED-PRINTABLE:a=\nEND:VCARD\n", "")},
      {"broken lines", fill("BEGIN:VCARD\n", "X;A=b\n", "A:b\nEND:VCARD\n")},
      {"broken lines, short", fill("BEGIN:VCARD\n", ";\n", "A:b\nEND:VCARD\n")},
      {"amplifier", amplifier(size)},
      {"semicolons", fill(begin + "N:", ";", end)},
      {"semicolons in a head", fill(begin + "X", ";", ":1" + end)},
      {"one long line", fill(begin + "NOTE:", "x", end)},
      {"one long head", fill(begin, "x", end)},
      {"one long name", fill(begin + "FN:", "x", end)},
      {"nested AGENTs", nested(size, "BEGIN:VCARD\nAGENT:\n", "END:VCARD\n")},
      {"nested components", fill(calendar, "BEGIN:X\n", "")},
      {"cards without END", fill("", "BEGIN:VCARD\nX:1\n", "")},
      {"sections", fill("", "BEGIN:VCARD\nEND:VCARD\n", "")},
      {"sections of a calendar", fill(calendar, "BEGIN:VEVENT\nEND:VEVENT\n", calendarEnd)},
      {"alarms", fill(calendar + "BEGIN:VEVENT\n", "BEGIN:VALARM\nEND:VALARM\n", "END:VEVENT\n")},
      {"begin: overlapping itself", fill("BEGIN:VCARD\n" + end, "bebegin:begi", "\n")},
      {"Base64 without an end", fill(begin + "PHOTO;BASE64:\n", " QUJDQUJDQUJD\n", "")},
      {"many Base64 values", fill(begin, "PHOTO;BASE64:\n QUJD\n", end)},
      {"lines that look like Base64", fill(begin, "PHOTO;BASE64:A\nQUJDQUJDQUJDQUJD!:x\n", end)},
      {"folds", fill(begin + "NOTE:", "\n a", end)},
      {"folds without text", fill(begin + "NOTE:", "\n ", end)},
      {"folds in a head", fill(begin + "NO", "\n a", end)},
      {"folds before properties", fill(begin + "NOTE:", "\n N:;", end)},
      {"folds before ENDs", fill(begin + "NOTE:\\n", "\n END:VCARD", end)},
      {"line ends", fill(begin + "NOTE:a", "\n", end)},
      {"open quotes", fill(begin, "X;A=\"b:c\n", end)},
      {"one open quote", fill(begin + "X;A=\"b:", "c\n d", end)},
      {"colons between quotes", fill(begin + "X;A=", "\":\",", end)},
      {"parameters behind a long one", fill(begin + "X;A=" + std::string(size, 'a'), ";B", end)},
      {"equal titles",
       fill(calendar, "ATTACH;VALUE=BINARY;BASE64;X-FILENAME=a.txt:QUJD\n\n", calendarEnd)},
      {"telephones", fill(begin, "TEL:\n", end)},
  };
}

}  // namespace px::test

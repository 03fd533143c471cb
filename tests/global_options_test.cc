// Options of the process, and filters on more than one thread. Meant for the tsan preset as well.

#include <thread>

#include "px/util.h"
#include "tests/support/runs.h"

namespace px::test {
namespace {

constexpr uint32_t kOption = 1000;

int32_t set(uint32_t option, const std::string &value) {
  return UTSetGlobalOption(option, value.data(), static_cast<uint32_t>(value.size()));
}

std::string get(uint32_t option, uint32_t room) {
  char value[16] = "none";
  const bool found = UTGetGlobalOption(option, value, &room) == 0;
  return found ? std::string(value, room) : value;
}

TEST(GlobalOptions, SetAndRead) {
  EXPECT_EQ(set(kOption, std::string(16, 'a')), 0);
  EXPECT_EQ(set(kOption, std::string(17, 'b')), -1);
  EXPECT_EQ(get(kOption, 15), "none");
  EXPECT_EQ(get(kOption, 16), std::string(16, 'a'));
  EXPECT_EQ(set(kOption, "bcd"), 0);
  EXPECT_EQ(get(kOption, 16), "bcd");
  uint32_t others = 0;
  while (set(kOption + 1 + others, "x") == 0) ++others;
  EXPECT_EQ(others, UTOptionMaxCount - 1U);
  EXPECT_EQ(set(kOption, "e"), 0);  // one that is set can be changed
  for (uint32_t i = 0; i <= others; ++i) UTSetGlobalOption(kOption + i, nullptr, 0);
  for (uint32_t i = 0; i <= others; ++i) EXPECT_EQ(get(kOption + i, 16), "none");
}

TEST(GlobalOptions, ThreadsReadWholeValues) {
  const auto work = [](char letter) {
    for (uint32_t i = 0; i < 3000; ++i) {
      set(kOption, std::string(i % 2 == 0 ? 16 : 9, letter));
      const std::string value = get(kOption, 16);
      EXPECT_TRUE(value == "none" || value == std::string(value.size(), value[0])) << value;
      UTSetGlobalOption(kOption - i % 3, nullptr, 0);
      set(kOption - 1, "xx");
    }
  };
  std::thread other(work, 'b');
  work('a');
  other.join();
  for (uint32_t i = 0; i < 3; ++i) UTSetGlobalOption(kOption - i, nullptr, 0);
}

TEST(Filter, RunsOnTwoThreads) {
  const auto work = [](const std::string &lines) {
    const std::string card = "BEGIN:VCARD\nN:a;b\nTEL;HOME:5\n" + lines +
                             "\nEND:VCARD\nBEGIN:VCARD\nTITLE:x\nEND:VCARD\n";
    const Trace alone = runOnce(card, VcardFormatVcard).trace;
    for (uint32_t i = 0; i < 30; ++i) {
      const BufferSize size(i % 3 + 1);
      EXPECT_EQ(runOnce(card, VcardFormatVcard).trace, alone);
    }
  };
  std::thread other(work, "PHOTO;BASE64:QUJD\n\nNOTE;QUOTED-PRINTABLE:=41");
  work("VERSION:3.0\nADR:a;b;c\nNOTE;CHARSET=utf-8:\xC3\xA9");
  other.join();
}

}  // namespace
}  // namespace px::test

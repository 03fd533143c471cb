#include "tests/support/runs.h"

#include <algorithm>

#include "px/util.h"

namespace px::test {

namespace {

std::string card(std::string_view lines, int16_t format) {
  const std::string name = format == VcardFormatVcard ? "VCARD" : "VCALENDAR";
  return "BEGIN:" + name + "\r\n" + std::string(lines) + "END:" + name + "\r\n";
}

// Where two traces part, in the brief form.
std::string difference(const Trace &a, const Trace &b) {
  const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  const auto around = [](const Trace &trace, Trace::const_iterator at) {
    const auto from = at - std::min<ptrdiff_t>(at - trace.begin(), 10);
    return brief({from, at + std::min<ptrdiff_t>(trace.end() - at, 10)});
  };
  return around(a, left) + "\n  but\n" + around(b, right);
}

}  // namespace

Recorder::Recorder() : TraceWriter([this](std::string_view line) { trace.emplace_back(line); }) {}

bool Recorder::emitBreak(uint32_t kind, uint32_t zero) {
  TraceWriter::emitBreak(kind, zero);
  return kind == SoBreakParagraph && stopAt && stopAt(++paragraph_);
}

void expectSameCalls(const Trace &expected, const Trace &other, const std::string &how) {
  if (expected != other) ADD_FAILURE() << how << ":\n" << difference(expected, other);
}

void expectSameText(std::string_view expected, std::string_view other, const std::string &how) {
  if (expected == other) return;
  const auto [left, right] =
      std::mismatch(expected.begin(), expected.end(), other.begin(), other.end());
  const auto at = static_cast<size_t>(left - expected.begin());
  const size_t from = at - std::min<size_t>(at, 40);
  ADD_FAILURE() << how << ", at byte " << at << " of " << expected.size() << " and "
                << other.size() << ":\n"
                << expected.substr(from, 80) << "\n  but\n"
                << other.substr(std::min(from, other.size()), 80);
}

Result runOnce(std::string_view bytes, int16_t format, const MemoryIoOptions &options,
               std::function<bool(int)> stopAt) {
  MemoryIo io(bytes, options);
  Recorder recorder;
  recorder.stopAt = std::move(stopAt);
  CardRun cardRun(filter(), &io, &recorder);
  const int32_t opened = cardRun.open(format);
  if (opened == VcardOpenGood) cardRun.readAll();
  std::string saved(VcardSavedSize, '\0');
  filter().getData(saved.data(), cardRun.data());
  return {opened, std::move(recorder.trace), saved};
}

Result run(std::string_view bytes, int16_t format, bool stops) {
  Result whole = runOnce(bytes, format);
  const auto expectSame = [&whole](const Result &other, const std::string &how) {
    EXPECT_EQ(whole.opened, other.opened) << how;
    EXPECT_TRUE(whole.saved == other.saved) << how;
    expectSameCalls(whole.trace, other.trace, how);
  };
  for (const uint32_t size : {1U, 2U, 3U, 7U}) {
    expectSame(runOnce(bytes, format, {.largestRead = size}), "reads of " + std::to_string(size));
  }
  expectSame(runOnce(bytes, format, {.largestRead = 5, .wideAnswer = 1}), "GetInfo answering 1");
  expectSame(runOnce(bytes, format, {.hasWideSlots = false}), "no 64-bit slots");
  {
    const BufferSize large(64);
    expectSame(runOnce(bytes, format), "a buffer of 64 KB");
  }
  if (stops) {
    expectSame(runOnce(bytes, format, {}, [](int) { return true; }), "a stop at each paragraph");
  }
  return whole;
}

BufferSize::BufferSize(uint32_t kilobytes) {
  UTSetGlobalOption(UTOptionInputBuffer, &kilobytes, sizeof kilobytes);
}

BufferSize::~BufferSize() { UTSetGlobalOption(UTOptionInputBuffer, nullptr, 0); }

std::vector<Section> sections(std::string_view bytes, int16_t format) {
  return sectionsOf(brief(run(bytes, format).trace));
}

std::string listing(std::string_view lines, int16_t format) {
  const auto all = sections(card(lines, format), format);
  if (all.size() != 1) return "sections: " + std::to_string(all.size());
  std::string_view text = all[0].listing;
  if (text == "end") return "";
  if (text.ends_with(" end")) text.remove_suffix(4);
  return std::string(text);
}

std::string summary(std::string_view lines, int16_t format) {
  const auto all = sections(card(lines, format), format);
  return all.empty() ? "no section" : all[0].summary;
}

}  // namespace px::test

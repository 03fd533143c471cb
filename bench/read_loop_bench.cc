// The read loop against its floor.
//
// The filter reads 20 MB of cards from memory for a host that only counts its calls. The floor, in
// the same run, is what no filter could do without: the same bytes read once through the same I/O
// object with a buffer of the same size, and one indirect call for each character that the filter
// has emitted. The table at the end gives the ratio of the two.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

#include "bench/sample_texts.h"
#include "host/filter/filter_library.h"
#include "host/io/memory_io.h"

namespace px::bench {
namespace {

constexpr size_t kTextSize = 20 * 1000 * 1000;
constexpr uint32_t kBufferSize = 2048;  // the filter's own without a global option

struct Counts {
  uint64_t characters = 0;
  uint64_t others = 0;
  uint32_t lastBreak = 0;
};

Counts *countsOf(uint64_t user0) { return reinterpret_cast<Counts *>(user0); }

int64_t countChar(uint16_t, uint64_t user0, uint64_t) {
  ++countsOf(user0)->characters;
  return 0;
}

// For all routines with a given number of arguments before the user values.
template <typename... Arguments>
int64_t countOther(Arguments..., uint64_t user0, uint64_t) {
  ++countsOf(user0)->others;
  return 0;
}

int64_t countBreak(uint32_t kind, uint32_t, uint64_t user0, uint64_t) {
  ++countsOf(user0)->others;
  countsOf(user0)->lastBreak = kind;
  return 0;
}

template <typename Routine>
void setRoutine(const FilterLibrary &filter, int16_t id, Routine *routine, VcardData *data) {
  filter.setSoRtn(id, reinterpret_cast<SoRoutine>(routine), data);
}

void setRoutines(const FilterLibrary &filter, Counts *counts, VcardData *data) {
  filter.setUser(reinterpret_cast<uint64_t>(counts), 0, data);
  setRoutine(filter, SoIdEmitChar, countChar, data);
  setRoutine(filter, SoIdEmitSpecial, countOther<uint32_t>, data);
  setRoutine(filter, SoIdEmitBreak, countBreak, data);
  setRoutine(filter, SoIdBeginSection, countOther<uint32_t, uint32_t, uint32_t>, data);
  setRoutine(filter, SoIdEmitObject, countOther<const VcardObjectRecord *>, data);
  setRoutine(filter, SoIdSetCharset, countOther<uint32_t>, data);
  setRoutine(filter, SoIdGetObjectBase, countOther<uint32_t *>, data);
  setRoutine(filter, SoIdEmitResourceString, countOther<uint32_t>, data);
  setRoutine(filter, SoIdUseStyle, countOther<uint32_t>, data);
  setRoutine(filter, SoIdSetObjectData, countOther<uint32_t, uint64_t, uint64_t>, data);
}

const std::string &textOf(Kind kind) {
  static std::map<Kind, std::string> texts;
  std::string &text = texts[kind];
  if (text.empty()) text = makeText(kind, kTextSize);
  return text;
}

Counts runFilter(const std::string &text) {
  MemoryIo io(text);
  Counts counts;
  VcardData *data = filterLibrary().allocProc();
  VcardStream *stream;
  filterLibrary().localUp(&io, &stream, data);
  setRoutines(filterLibrary(), &counts, data);
  filterLibrary().streamOpen(stream, VcardFormatVcard, 0, nullptr, data);
  do {
    filterLibrary().streamTell(0, data);
    filterLibrary().streamSection(0, data);
    filterLibrary().streamRead(0, data);
  } while (counts.lastBreak == SoBreakSection);
  VcardIo *same;
  filterLibrary().localDown(stream, &same);
  filterLibrary().freeProc(data);
  return counts;
}

uint64_t runFloor(const std::string &text, uint64_t characters) {
  MemoryIo io(text);
  std::vector<uint8_t> buffer(kBufferSize);
  uint32_t count;
  do {
    if (io.Read(&io, buffer.data(), kBufferSize, &count) != 0) break;
  } while (count > 0);
  Counts counts;
  auto routine = reinterpret_cast<SoEmitCharRoutine>(countChar);
  benchmark::DoNotOptimize(routine);  // a call through a pointer that nobody can see through
  for (uint64_t i = 0; i < characters; ++i) {
    routine(static_cast<uint16_t>(i), reinterpret_cast<uint64_t>(&counts), 0);
  }
  return counts.characters;
}

void filterBench(benchmark::State &state, Kind kind) {
  const std::string &text = textOf(kind);
  Counts counts;
  for (auto _ : state) counts = runFilter(text);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
  state.counters["characters"] = static_cast<double>(counts.characters);
  state.counters["other calls"] = static_cast<double>(counts.others);
}

void floorBench(benchmark::State &state, Kind kind) {
  const std::string &text = textOf(kind);
  const uint64_t characters = runFilter(text).characters;
  for (auto _ : state) benchmark::DoNotOptimize(runFloor(text, characters));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// Prints what the console prints, and keeps the best time of each benchmark.
class Reporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run> &runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
      double &best = best_[run.run_name.function_name];
      best = best == 0 ? seconds : std::min(best, seconds);
    }
  }

  void Finalize() override {
    std::printf("\n%-18s %12s %12s %8s\n", "20 MB of cards", "filter MB/s", "floor MB/s", "ratio");
    for (const Kind kind : kKinds) {
      const std::string name = nameOf(kind);
      const double filterTime = best_["filter/" + name];
      const double floorTime = best_["floor/" + name];
      if (filterTime == 0 || floorTime == 0) continue;
      const double megabytes = static_cast<double>(textOf(kind).size()) / 1e6;
      std::printf("%-18s %12.0f %12.0f %8.2f\n", name.c_str(), megabytes / filterTime,
                  megabytes / floorTime, filterTime / floorTime);
    }
  }

 private:
  std::map<std::string, double> best_;
};

}  // namespace
}  // namespace px::bench

int main(int argc, char **argv) {
  using namespace px::bench;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  for (const Kind kind : kKinds) {
    const std::string name = nameOf(kind);
    benchmark::RegisterBenchmark(("filter/" + name).c_str(), filterBench, kind)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("floor/" + name).c_str(), floorBench, kind)
        ->Unit(benchmark::kMillisecond);
  }
  Reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}

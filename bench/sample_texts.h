// Generated card files for the benchmarks: the same bytes every time.

#ifndef PX_BENCH_SAMPLE_TEXTS_H
#define PX_BENCH_SAMPLE_TEXTS_H

#include <cstddef>
#include <string>

namespace px::bench {

enum class Kind { Plain, Utf8, Picture, QuotedPrintable };
inline constexpr Kind kKinds[] = {Kind::Plain, Kind::Utf8, Kind::Picture, Kind::QuotedPrintable};

const char *nameOf(Kind kind);

// Whole cards, one behind the other, of at least `bytes` bytes together.
std::string makeText(Kind kind, size_t bytes);

}  // namespace px::bench

#endif

// Generated card files: the same bytes every time.

#ifndef PX_BENCH_CORPORA_H
#define PX_BENCH_CORPORA_H

#include <cstddef>
#include <iosfwd>
#include <span>

namespace px::bench {

// What a file is for: a kind of card of its own, or how the cost grows with the size.
enum class Purpose { Kind, Growth };

class Writer;

struct Corpus {
  const char *name;
  Purpose purpose;
  size_t bytes;  // whole cards of at least as many together
  void (*addCard)(Writer &writer, size_t bytes);
  bool isCalendar = false;
  // Nearly all of it is Base64, of which no filter can do less than look for the line ends.
  bool isPictures = false;

  void write(std::ostream &file) const;
};

std::span<const Corpus> corpora();

}  // namespace px::bench

#endif

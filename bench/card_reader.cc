// card_reader: what a file of cards costs a host that only counts the calls, or makes its view.
//
//   card_reader filter vcard|vcalendar FILE   reads FILE through the filter; prints the number of
//                                             calls of each output routine, as ID:NUMBER
//   card_reader floor FILE [ID:NUMBER]...     what no filter can do without
//   card_reader lines FILE [ID:NUMBER]...     the floor of a file that is nearly all Base64
//   card_reader view FILE                     the pass that makes the view which pxcard reads
//
// The floor reads the file twice, as the two passes over a card do, through the same I/O object
// with a buffer of the same size, and makes the given calls through the table of a record; nothing
// else. With `lines` it looks for each line end by memchr, both times.

#include <fcntl.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "host/filter/filter_library.h"
#include "host/io/file_io.h"
#include "host/source/source_view.h"
#include "px/util.h"
#include "vcrd/frame/host_routines.h"

namespace px::bench {
namespace {

constexpr uint32_t kBufferKilobytes = 64;

struct Counts {
  uint64_t Of[SoIdCommitObjectData + 1] = {};
  uint32_t LastBreak = 0;
};

// A routine of any number of arguments before the user values.
template <int Id, typename... Arguments>
int64_t count(Arguments... arguments, uint64_t user0, uint64_t) {
  auto *counts = reinterpret_cast<Counts *>(user0);
  ++counts->Of[Id];
  if constexpr (Id == SoIdEmitBreak) counts->LastBreak = std::get<0>(std::tuple(arguments...));
  return 0;
}

template <int Id, typename... Arguments>
void setRoutine(VcardData *data) {
  filterLibrary().setSoRtn(Id, reinterpret_cast<SoRoutine>(count<Id, Arguments...>), data);
}

// A record whose routines count their calls.
VcardData *newRecord(VcardIo *io, VcardStream **stream, Counts *counts) {
  UTSetGlobalOption(UTOptionInputBuffer, &kBufferKilobytes, sizeof kBufferKilobytes);
  const FilterLibrary &filter = filterLibrary();
  VcardData *data = filter.allocProc();
  filter.localUp(io, stream, data);
  filter.setUser(reinterpret_cast<uint64_t>(counts), 0, data);
  setRoutine<SoIdEmitChar, uint16_t>(data);
  setRoutine<SoIdEmitSpecial, uint32_t>(data);
  setRoutine<SoIdEmitBreak, uint32_t, uint32_t>(data);
  setRoutine<SoIdBeginSection, uint32_t, uint32_t, uint32_t>(data);
  setRoutine<SoIdEmitObject, const VcardObjectRecord *>(data);
  setRoutine<SoIdRoutine88, uint32_t, uint32_t>(data);
  setRoutine<SoIdRoutine89, uint32_t, uint32_t>(data);
  setRoutine<SoIdSetCharset, uint32_t>(data);
  setRoutine<SoIdGetObjectBase, uint32_t *>(data);
  setRoutine<SoIdEmitResourceString, uint32_t>(data);
  setRoutine<SoIdUseStyle, uint32_t>(data);
  setRoutine<SoIdSetObjectData, uint32_t, uint64_t, uint64_t>(data);
  setRoutine<SoIdCommitObjectData>(data);
  return data;
}

void runFilter(int16_t format, VcardIo *io) {
  const FilterLibrary &filter = filterLibrary();
  Counts counts;
  VcardStream *stream;
  VcardData *data = newRecord(io, &stream, &counts);
  if (filter.streamOpen(stream, format, 0, nullptr, data) != VcardOpenGood) return;
  do {
    filter.streamTell(0, data);
    filter.streamSection(0, data);
    filter.streamRead(0, data);
  } while (counts.LastBreak == SoBreakSection);
  for (size_t id = 0; id < std::size(counts.Of); ++id) {
    if (counts.Of[id] != 0) std::printf("%zu:%llu\n", id, 0ULL + counts.Of[id]);
  }
}

class Floor {
 public:
  Floor(VcardIo *io, bool findLines) : io_(io), findLines_(findLines) {}

  void run(const Counts &wanted) {
    Counts counts;
    VcardStream *stream;
    data_ = newRecord(io_, &stream, &counts);
    for (int pass = 0; pass < 2; ++pass) readAll();
    for (uint64_t left = wanted.Of[SoIdEmitChar]; left > 0;) {
      const uint64_t taken = std::min<uint64_t>(left, buffer_.size());
      VcardEmitRun(buffer_.data(), buffer_.data() + taken, data_);
      left -= taken;
    }
    uint32_t base = 0;
    const VcardObjectRecord object = {};
    const auto repeat = [&wanted](int id, auto call) {
      for (uint64_t i = 0; i < wanted.Of[id]; ++i) call();
    };
    repeat(SoIdEmitSpecial, [this] { SoEmitSpecial(SoSpecialTab, data_); });
    repeat(SoIdEmitBreak, [this] { VcardEndParagraph(data_); });
    repeat(SoIdBeginSection, [this] { SoBeginSection(data_); });
    repeat(SoIdEmitObject, [this, &object] { SoEmitObject(&object, data_); });
    repeat(SoIdRoutine88, [this] { SoRoutine88(data_); });
    repeat(SoIdRoutine89, [this] { SoRoutine89(data_); });
    repeat(SoIdSetCharset, [this] { SoSetCharset(SoCharsetDefault, data_); });
    repeat(SoIdGetObjectBase, [this, &base] { SoGetObjectBase(&base, data_); });
    repeat(SoIdEmitResourceString, [this] { SoEmitResourceString(0, data_); });
    repeat(SoIdUseStyle, [this] { SoUseStyle(0, data_); });
    repeat(SoIdSetObjectData, [this] { SoSetObjectData(SoObjectDataKind, 2, 0, data_); });
    repeat(SoIdCommitObjectData, [this] { SoCommitObjectData(data_); });
    std::printf("%llu lines, %llu characters\n", 0ULL + lines_, 0ULL + counts.Of[SoIdEmitChar]);
  }

 private:
  void readAll() {
    io_->Seek(io_, 0, 0);
    uint32_t size;
    while (io_->Read(io_, buffer_.data(), static_cast<uint32_t>(buffer_.size()), &size) == 0 &&
           size > 0) {
      if (findLines_) countLines(buffer_.data(), buffer_.data() + size);
    }
  }

  void countLines(const uint8_t *begin, const uint8_t *end) {
    const auto next = [end](const uint8_t *p) {
      return static_cast<const uint8_t *>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
    };
    for (const uint8_t *p = next(begin); p != nullptr; p = next(p + 1)) ++lines_;
  }

  VcardIo *io_;
  bool findLines_;
  VcardData *data_ = nullptr;
  std::vector<uint8_t> buffer_ = std::vector<uint8_t>(kBufferKilobytes * 1024);
  uint64_t lines_ = 0;
};

void makeView(VcardIo *io) {
  uint64_t faults = 0;
  const SourceView view(io, [&](uint64_t, const std::string &) { ++faults; });
  std::printf("%llu sections, %llu bytes, %llu faults\n", 0ULL + view.notes().sectionCount(),
              0ULL + view.text().size(), 0ULL + faults);
}

// Takes the arguments ID:NUMBER.
Counts wantedCalls(char **begin, char **end) {
  Counts counts;
  for (char **argument = begin; argument != end; ++argument) {
    char *colon;
    const unsigned long id = std::strtoul(*argument, &colon, 10);
    if (id < std::size(counts.Of) && *colon == ':') {
      counts.Of[id] = std::strtoull(colon + 1, nullptr, 10);
    }
  }
  return counts;
}

int run(int argc, char **argv) {
  const std::string_view mode = argc > 1 ? argv[1] : "";
  const bool isFilter = mode == "filter" && argc == 4;
  const bool isFloor = (mode == "floor" || mode == "lines") && argc > 2;
  const bool isView = mode == "view" && argc == 3;
  if (!isFilter && !isFloor && !isView) {
    std::fprintf(stderr,
                 "card_reader filter vcard|vcalendar FILE\n"
                 "card_reader floor|lines FILE [ID:NUMBER]...\n"
                 "card_reader view FILE\n");
    return 2;
  }
  const char *const name = isFilter ? argv[3] : argv[2];
  FileDescriptor file(open(name, O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) {
    std::perror(name);
    return 1;
  }
  FileIo io(std::move(file));
  try {
    if (isView) {
      makeView(&io);
    } else if (isFilter) {
      const bool isCalendar = std::string_view(argv[2]) == "vcalendar";
      runFilter(isCalendar ? VcardFormatVcalendar : VcardFormatVcard, &io);
    } else {
      Floor(&io, mode == "lines").run(wantedCalls(argv + 3, argv + argc));
    }
    io.check();
  } catch (const std::runtime_error &error) {
    std::fprintf(stderr, "%s: %s\n", name, error.what());
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace px::bench

int main(int argc, char **argv) { return px::bench::run(argc, argv); }

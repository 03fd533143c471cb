// px_bench: makes the corpora, runs the programs that are compared on each of them in turn, and
// prints one table.
//
// Each program is a process of its own that reads a file; its time is the processor time of the
// process, its memory the peak of its resident set. All programs run once in each round, so that a
// slow phase of the machine meets all of them, and the medians are compared.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/corpora.h"

namespace px::bench {
namespace {

namespace fs = std::filesystem;
using Command = std::vector<std::string>;

struct Measured {
  double seconds;
  double megabytes;
};

// A folder for the corpora, removed with all that stands in it.
class TemporaryFolder {
 public:
  TemporaryFolder() : path_(fs::temp_directory_path() / "px_bench.XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("can't make " + path_);
  }
  ~TemporaryFolder() { fs::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder &) = delete;
  TemporaryFolder &operator=(const TemporaryFolder &) = delete;

  const std::string &path() const { return path_; }

 private:
  std::string path_;
};

double secondsOf(const timeval &time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Measured run(const Command &command, const std::string &output) {
  const pid_t child = fork();
  if (child == 0) {
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || dup2(file, STDOUT_FILENO) < 0) _exit(126);
    std::vector<char *> arguments;
    for (const std::string &argument : command) {
      arguments.push_back(const_cast<char *>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
  }
  int status = 0;
  rusage used{};
  if (child < 0 || wait4(child, &status, 0, &used) != child || status != 0) {
    throw std::runtime_error(command[0] + " failed");
  }
  return {secondsOf(used.ru_utime) + secondsOf(used.ru_stime),
          static_cast<double>(used.ru_maxrss) / 1024};
}

void write(const Corpus &corpus, const std::string &file) {
  std::ofstream stream(file, std::ios::binary);
  corpus.write(stream);
  if (!stream.flush()) throw std::runtime_error("can't write " + file);
}

// One program on one corpus.
struct Row {
  std::string program;
  Command command;
  std::vector<double> seconds = {};
  double megabytes = 0;

  double median() const {
    std::vector<double> sorted = seconds;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
  }
  // How far the times lie apart, in per cent of the median.
  double spread() const {
    const auto [least, most] = std::minmax_element(seconds.begin(), seconds.end());
    return (*most - *least) / median() * 100;
  }
};

class Bench {
 public:
  Bench(fs::path programs, fs::path folder, int rounds)
      : programs_(std::move(programs)), folder_(std::move(folder)), rounds_(rounds) {}

  // The files are removed behind their rows, so that the largest is all the room that is taken.
  void run(const Corpus &corpus) {
    const std::string file = folder_ / (corpus.isCalendar ? "cards.vcs" : "cards.vcf");
    write(corpus, file);
    std::vector<Row> rows = rowsOf(corpus, file);
    const int rounds = corpus.purpose == Purpose::Kind ? rounds_ : std::min(rounds_, 3);
    for (int round = 0; round < rounds; ++round) {
      for (Row &row : rows) {
        const Measured measured = bench::run(row.command, "/dev/null");
        row.seconds.push_back(measured.seconds);
        row.megabytes = std::max(row.megabytes, measured.megabytes);
      }
    }
    results_.push_back({corpus.name, static_cast<double>(fs::file_size(file)) / 1e6, rows});
    fs::remove(file);
  }

  void printTable() const {
    std::printf("%-24s %-10s %8s %7s %7s %8s %9s %8s\n", "corpus", "program", "seconds", "spread",
                "MB/s", "x floor", "x filter", "peak MB");
    for (const Result &result : results_) {
      const double floor = result.rows[0].median();
      const double filter = result.rows[1].median();
      for (const Row &row : result.rows) {
        const bool isFirst = &row == &result.rows[0];
        std::printf("%-24s %-10s %8.3f %6.0f%% %7.0f %8.2f %9.2f %8.1f\n",
                    isFirst ? result.corpus : "", row.program.c_str(), row.median(), row.spread(),
                    result.megabytes / row.median(), row.median() / floor, row.median() / filter,
                    row.megabytes);
      }
    }
  }

 private:
  struct Result {
    const char *corpus;
    double megabytes;
    std::vector<Row> rows;  // the floor, the filter, and what is compared with them
  };

  std::vector<Row> rowsOf(const Corpus &corpus, const std::string &file) const {
    const std::string reader = programs_ / "card_reader";
    const Command filter = {reader, "filter", corpus.isCalendar ? "vcalendar" : "vcard", file};
    Command floor = {reader, corpus.isPictures ? "lines" : "floor", file};
    const std::string counts = folder_ / "counts";
    bench::run(filter, counts);
    std::ifstream lines(counts);
    for (std::string line; std::getline(lines, line);) floor.push_back(line);
    const std::string pxcard = programs_ / "pxcard";
    std::vector<Row> rows = {{"floor", floor},
                             {"filter", filter},
                             {"view", {reader, "view", file}},
                             {"text raw", {pxcard, "--raw", file}},
                             {"text", {pxcard, file}}};
    if (corpus.purpose == Purpose::Kind) {
      rows.push_back({"jsonl", {pxcard, "--format", "jsonl", file}});
    }
    if (corpus.purpose == Purpose::Kind) {
      for (const std::string peer : {"vobject", "evcard", "kcontacts"}) {
        const fs::path program = programs_ / ("read_by_" + peer);
        const bool canRead = !corpus.isCalendar || peer == "vobject";
        if (canRead && fs::exists(program)) rows.push_back({peer, {program, file}});
      }
    }
    return rows;
  }

  fs::path programs_;
  fs::path folder_;
  int rounds_;
  std::vector<Result> results_;
};

// For bench/pxcards_read.py.
void writeCorpora(const fs::path &folder) {
  for (const Corpus &corpus : corpora()) {
    if (corpus.purpose != Purpose::Kind) continue;
    std::string name = corpus.name;
    std::replace(name.begin(), name.end(), ' ', '-');
    write(corpus, folder / (name + (corpus.isCalendar ? ".vcs" : ".vcf")));
  }
}

int main(int argc, char **argv) {
  int rounds = 7;
  bool growth = true;
  CLI::App app("Measures the filter, its floor and what is compared with them.", "px_bench");
  app.add_option("--rounds", rounds, "runs of each program on each corpus")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  std::string corporaFolder;
  app.add_option("--write", corporaFolder,
                 "write the corpora of 20 MB to this folder, and measure nothing")
      ->check(CLI::ExistingDirectory);
  app.add_flag("!--no-growth", growth, "leave out the corpora of other sizes");
  CLI11_PARSE(app, argc, argv);
  if (!corporaFolder.empty()) {
    writeCorpora(corporaFolder);
    return 0;
  }

  const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
  const TemporaryFolder folder;
  Bench bench(programs, folder.path(), rounds);
  for (const Corpus &corpus : corpora()) {
    if (corpus.purpose == Purpose::Growth && !growth) continue;
    std::fprintf(stderr, "%s\n", corpus.name);
    bench.run(corpus);
  }
  bench.printTable();
  return 0;
}

}  // namespace
}  // namespace px::bench

int main(int argc, char **argv) {
  try {
    return px::bench::main(argc, argv);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "px_bench: %s\n", error.what());
    return 1;
  }
}

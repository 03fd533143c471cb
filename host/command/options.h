// The arguments of pxcard.

#ifndef PX_HOST_COMMAND_OPTIONS_H
#define PX_HOST_COMMAND_OPTIONS_H

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace px {

// What is made of the files.
// Extract saves objects in a folder, ExtractOne writes one.
enum class Task { Text, Html, Json, JsonLines, Trace, Check, Extract, ExtractOne };

enum class Color { Auto, Always, Never };

// What is asked for in place of work on files.
enum class Question { None, Help, Version, Completion };

struct Options {
  Question question = Question::None;
  std::string shell;  // of the completion
  Task task = Task::Text;
  std::string directory;    // to save objects in
  std::string namePattern;  // of the saved objects; empty: their own names
  uint32_t object = 1;      // that is written, as ObjectChoice takes it
  bool raw = false;
  bool noLimit = false;
  bool tolerant = false;
  Color color = Color::Auto;
  std::optional<uint32_t> width;  // of text, as TextLook has it; nothing: that of the terminal
  std::string output;             // a file; empty: standard output
  bool quiet = false;
  uint32_t jobs = 1;
  bool recursive = false;
  std::string files0From;  // a file with names; empty: none, "-": standard input
  std::vector<std::string> files;
};

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Chooses the language too: that of --lang, or of the environment. Throws UsageError, whose text
// is in that language and can hold an argument as it was given.
Options parseOptions(int argc, char **argv);

}  // namespace px

#endif

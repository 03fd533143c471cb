// The options of pxcard, a row each: what is parsed, what the help tells, what shells complete.

#ifndef PX_HOST_COMMAND_OPTION_TABLE_H
#define PX_HOST_COMMAND_OPTION_TABLE_H

#include <span>
#include <string_view>

namespace px {

// Those with a short form are known by its letter.
enum OptionId : int {
  OptionHelp = 'h',
  OptionOutput = 'o',
  OptionQuiet = 'q',
  OptionRecursive = 'r',
  OptionFormat = 256,
  OptionCheck,
  OptionExtract,
  OptionName,
  OptionObject,
  OptionRaw,
  OptionNoLimit,
  OptionTolerant,
  OptionWidth,
  OptionColor,
  OptionFiles0From,
  OptionJobs,
  OptionLang,
  OptionCompletion,
  OptionVersion,
};

enum class Completes { Nothing, Words, Files, Folders };

struct OptionRow {
  OptionId id;
  const char *name;   // without dashes
  const char *value;  // what its value is called in the help; null: it takes none
  Completes completes;
  const char *words;  // that the value can be, with blanks between
  const char *help;

  bool isShort() const { return id < OptionFormat; }
};

// In the order of the help.
std::span<const OptionRow> optionTable();

}  // namespace px

#endif

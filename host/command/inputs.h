// Which files there are to read: those named as arguments or in a list, and those below folders.

#ifndef PX_HOST_COMMAND_INPUTS_H
#define PX_HOST_COMMAND_INPUTS_H

#include <fts.h>

#include <cstdio>
#include <memory>
#include <string>

#include "host/command/options.h"

namespace px {

struct Input {
  std::string name;   // "-": standard input
  std::string fault;  // why it can't be read, in the language chosen; empty: not known to be so
};

class InputList {
 public:
  // `options` isn't owned. Nothing is opened before the first file is asked for.
  explicit InputList(const Options &options) : options_(options) {}

  // Answers false behind the last. No list is held: folders and lists of names are read on the way.
  // The files of a folder come sorted by name; those with the extension of a card in any case are
  // taken. Links to files are followed below a folder, links to folders are not, and the folder
  // that objects are saved in is left out.
  bool next(Input *input);

  // There is one file at most, so there is no need to say which one is shown.
  bool isSingle() const;

  // Another list would go through the same files.
  bool isRepeatable() const { return options_.files0From != "-"; }

 private:
  struct CloseWalk {
    void operator()(FTS *walk) const { fts_close(walk); }
  };
  struct CloseNames {
    void operator()(FILE *names) const { fclose(names); }
  };

  bool nextName(Input *input);
  bool nextBelow(Input *input);
  void beginWalk(const std::string &folder);

  const Options &options_;
  size_t argument_ = 0;
  std::unique_ptr<FILE, CloseNames> names_;
  bool namesEnded_ = false;
  std::unique_ptr<FTS, CloseWalk> walk_;
  std::string folder_;     // that is walked
  bool foundAny_ = false;  // in it
};

}  // namespace px

#endif

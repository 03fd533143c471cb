// Saves the decoded content of every embedded object and attachment of a file in a directory.
//
// Each object is opened, read and saved in the moment in which the filter places it, so memory
// doesn't grow with their number. Use:
//
//     ObjectExtraction extraction(filter, &directory, checkInput, report);
//     CardRun run(filter, io, &extraction);
//     if (run.open(formatId) != VcardOpenGood) ...
//     extraction.attach(run.stream());
//     run.readAll();
//
// A file is named by the attachment's own title where there is one, else by section, property and
// number in the section: 1-photo-1.jpg. The extension comes from the content; a title's own
// extension stays where the content doesn't speak against it. A title is a hint from a stranger:
// safeFileName and SaveDirectory keep it in bounds.

#ifndef PX_HOST_SAVING_OBJECT_EXTRACTION_H
#define PX_HOST_SAVING_OBJECT_EXTRACTION_H

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/reading/character_decoder.h"
#include "host/filter/filter_library.h"
#include "host/filter/output.h"
#include "host/saving/save_directory.h"

namespace px {

// A file that was saved.
struct SavedObject {
  std::string name;      // in the directory; UTF-8 without control characters
  uint32_t card = 0;     // in which card of the file it stands, counted from 1
  std::string type;      // MIME type of the content
  uint64_t size = 0;     // in bytes
  bool damaged = false;  // a byte that is no Base64 ended the data early
};

// A failure ends the run: a member throws std::runtime_error, whose text is for a person. The files
// saved before it stay.
class ObjectExtraction : public Output {
 public:
  using CheckInput = std::function<void()>;
  using Report = std::function<void(const SavedObject &)>;

  // `filter` and `directory` aren't owned. `checkInput` throws when the input has failed so far:
  // the filter takes a failure for the end of the input, and an object that ends there isn't saved.
  ObjectExtraction(const FilterLibrary &filter, SaveDirectory *directory, CheckInput checkInput,
                   Report report);

  // Tells the stream of the run, before the run reads.
  void attach(VcardStream *stream) { stream_ = stream; }

  void beginSection(uint32_t, uint32_t, uint32_t) override;
  void emitChar(uint16_t code) override;
  void emitObject(const VcardObjectRecord &object) override;
  void beginDefinition(uint32_t type, uint32_t id, const void *record) override;
  void endDefinition(uint32_t type, uint32_t id) override;
  void emitResourceString(uint32_t id) override;
  void useStyle(uint32_t id) override;
  void setObjectData(uint32_t selector, uint64_t a, uint64_t b) override;

 private:
  void save(std::string_view title);
  size_t readFull(VcardIo *io);

  const FilterLibrary &filter_;
  SaveDirectory &directory_;
  const CheckInput checkInput_;
  const Report report_;
  VcardStream *stream_ = nullptr;
  std::vector<char> buffer_;

  std::set<uint32_t> paragraphStyles_;
  uint32_t section_ = 0;
  bool labelExpected_ = false;          // the property's label comes next
  uint32_t label_ = 0;                  // string id
  std::map<uint32_t, uint32_t> count_;  // of the section's objects, by label
  uint64_t start_ = 0;
  uint64_t length_ = 0;  // of the encoded text
  bool inTitle_ = false;
  CharacterDecoder decoder_;
  std::string title_;
};

}  // namespace px

#endif

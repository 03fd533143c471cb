// Saves the decoded content of every embedded object and attachment of a file in a directory.
//
// Each object is opened, read and saved in the moment in which its event comes, so memory doesn't
// grow with their number.
//
// A file is named by the attachment's own title where there is one, else by section, property and
// number in the section: 1-photo-1.jpg; or by a pattern. The extension comes from the content; a
// title's own extension stays where the content doesn't speak against it. A title is a hint from a
// stranger: safeFileName and SaveDirectory keep it in bounds. Content that has been saved already
// isn't saved again.

#ifndef PX_HOST_SAVING_OBJECT_EXTRACTION_H
#define PX_HOST_SAVING_OBJECT_EXTRACTION_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/reading/card_events.h"
#include "host/saving/save_directory.h"
#include "host/saving/saved_contents.h"

namespace px {

// A file that was saved.
struct SavedObject {
  std::string name;      // in the directory; UTF-8 without control characters. That of the first
                         // object with this content
  uint32_t card = 0;     // in which card of the file it stands, counted from 1
  std::string type;      // MIME type of the content
  uint64_t size = 0;     // in bytes
  bool damaged = false;  // a byte that is no Base64 ended the data early
};

// A failure ends the run: a member throws std::runtime_error, whose text is for a person. The files
// saved before it stay.
class ObjectExtraction : public CardEvents {
 public:
  using CheckInput = std::function<void()>;
  using Report = std::function<void(const SavedObject &)>;

  // Where the objects of all files go. An empty pattern: each is named as said above.
  struct Target {
    SaveDirectory directory;
    SavedContents contents{};
    std::string pattern;
  };

  // Saves those of the file named `file`. `target` isn't owned. `checkInput` throws when the input
  // has failed so far: the filter takes a failure for the end of the input, and an object that ends
  // there isn't saved.
  ObjectExtraction(const std::string &file, Target *target, CheckInput checkInput, Report report);

  void beginSection(const Section &section) override;
  void beginProperty(const Property &property) override;
  void object(const PlacedObject &object) override;

 private:
  size_t readFull(VcardIo *io);
  std::string commit(const PlacedObject &object, std::string_view extension);

  const std::string file_;
  Target &target_;
  const CheckInput checkInput_;
  const Report report_;
  std::vector<char> buffer_;

  uint32_t section_ = 0;
  std::string name_;                       // of the property, as it stands in a file's name
  std::map<std::string, uint32_t> count_;  // of the section's objects, by that name
  uint32_t number_ = 0;                    // of the object in the file
};

}  // namespace px

#endif

// The one object that goes to standard output, of all that the files hold.

#ifndef PX_HOST_COMMAND_OBJECT_CHOICE_H
#define PX_HOST_COMMAND_OBJECT_CHOICE_H

#include <cstdint>
#include <optional>

#include "host/io/file_writer.h"
#include "host/io/spool_file.h"
#include "host/reading/card_events.h"

namespace px {

class ObjectChoice final : public CardEvents {
 public:
  static constexpr uint32_t Picture = 0;

  // By its number, counted from 1 over all that is read; or Picture: the first photo, else the
  // first logo or other picture.
  explicit ObjectChoice(uint32_t number) : number_(number) {}

  // What follows wouldn't change it, so it needn't be read.
  bool isMade() const { return content_ && !isSecondBest_; }

  bool isFound() const { return content_.has_value(); }
  bool isDamaged() const { return isDamaged_; }  // a byte that is no Base64 ended it early
  uint32_t count() const { return count_; }      // of the objects that were met

  // Writes its content. Throws as a FileWriter does.
  void write(FileWriter *out) const;

  void beginProperty(const Property &property) override { label_ = property.label; }
  // Throws std::runtime_error, with a text for a person, when the object can't be read.
  void object(const PlacedObject &object) override;

 private:
  const uint32_t number_;
  uint32_t count_ = 0;
  uint32_t label_ = 0;  // of the property
  std::optional<SpoolFile> content_;
  bool isSecondBest_ = false;  // a picture, but no photo
  bool isDamaged_ = false;
};

}  // namespace px

#endif

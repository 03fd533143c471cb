// The events of a section on their way to who wants them, with a note of each object, so that it
// can be opened by its number later.

#ifndef PX_HOST_LIBRARY_SECTION_OBJECTS_H
#define PX_HOST_LIBRARY_SECTION_OBJECTS_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "host/io/spool_file.h"
#include "host/reading/card_events.h"

namespace px {

class SectionObjects : public CardEvents {
 public:
  // Hands what follows on to `target`, which isn't owned.
  void setTarget(CardEvents *target) { target_ = target; }

  // In the section that began last.
  uint32_t count() const { return count_; }
  // The place of the object `number`, from 1 to count().
  Extent place(uint32_t number) const {
    Extent place;
    places_.readAt((number - uint64_t{1}) * sizeof place, &place, sizeof place);
    return place;
  }
  void forget() {
    if (count_ > 0) places_ = SpoolFile();
    count_ = 0;
  }

  void beginSection(const Section &section) override {
    forget();
    target_->beginSection(section);
  }
  void beginSummaryLine(SummaryKind kind, bool completed) override {
    target_->beginSummaryLine(kind, completed);
  }
  void endSummaryLine(const std::vector<std::string> &types) override {
    target_->endSummaryLine(types);
  }
  void beginProperty(const Property &property) override { target_->beginProperty(property); }
  void beginField(uint32_t label) override { target_->beginField(label); }
  void text(std::string_view utf8) override { target_->text(utf8); }
  void lineBreak() override { target_->lineBreak(); }
  void object(const PlacedObject &object) override {
    places_.append({reinterpret_cast<const char *>(&object.place), sizeof object.place});
    ++count_;
    target_->object(object);
  }
  void lateParameter(const Parameter &parameter) override { target_->lateParameter(parameter); }
  void endProperty() override { target_->endProperty(); }
  void endSection() override { target_->endSection(); }

 private:
  CardEvents *target_ = nullptr;
  SpoolFile places_;
  uint32_t count_ = 0;
};

}  // namespace px

#endif

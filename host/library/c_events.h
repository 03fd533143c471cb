// Events into the routines of a caller in C.

#ifndef PX_HOST_LIBRARY_C_EVENTS_H
#define PX_HOST_LIBRARY_C_EVENTS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/reading/card_events.h"
#include "px/cards.h"

namespace px {

class CEvents : public CardEvents {
 public:
  // Sets the routines for a section. `events` is copied; false where takeRecord refuses it.
  bool begin(const PxEvents *events, void *user);

  // One of the routines wanted no more. None was called since.
  bool stopped() const { return stopped_; }

  void beginSection(const Section &section) override;
  void beginSummaryLine(SummaryKind kind, bool completed) override;
  void endSummaryLine(const std::vector<std::string> &types) override;
  void beginProperty(const Property &property) override;
  void beginField(uint32_t label) override;
  void text(std::string_view utf8) override;
  void lineBreak() override;
  void object(const PlacedObject &object) override;
  void lateParameter(const Parameter &parameter) override;
  void endProperty() override;
  void endSection() override;

 private:
  template <class... Args, class... Given>
  void call(int32_t (*routine)(void *, Args...), Given... args) {
    if (routine && !stopped_) stopped_ = routine(user_, args...) != 0;
  }
  PxParameter parameterOf(const Parameter &parameter, size_t first) const;

  PxEvents events_{};
  void *user_ = nullptr;
  bool stopped_ = false;
  uint32_t objects_ = 0;

  // Reused by each event.
  std::vector<PxText> types_, values_;
  std::vector<PxParameter> parameters_;
  std::vector<const PxParameter *> told_;
};

}  // namespace px

#endif

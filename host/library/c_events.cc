#include "host/library/c_events.h"

#include <cstddef>

#include "host/library/sized_record.h"

namespace px {
namespace {

// The kinds have the same numbers on both sides.
static_assert(static_cast<int>(SummaryKind::Name) == PxSummaryName);
static_assert(static_cast<int>(SummaryKind::Summary) == PxSummarySummary);
static_assert(static_cast<int>(SummaryKind::Entry) == PxSummaryEntry);

PxText textOf(const std::string &text) { return {text.c_str(), text.size()}; }

PxExtent extentOf(const std::optional<Extent> &extent) {
  return extent ? PxExtent{extent->offset, extent->length} : PxExtent{PxUnknown, PxUnknown};
}

void setTexts(const std::vector<std::string> &from, std::vector<PxText> *to) {
  to->clear();
  for (const std::string &text : from) to->push_back(textOf(text));
}

}  // namespace

bool CEvents::begin(const PxEvents *events, void *user) {
  constexpr size_t kFirst = offsetof(PxEvents, endSection) + sizeof(PxEvents::endSection);
  if (!takeRecord(*events, kFirst, &events_)) return false;
  user_ = user;
  stopped_ = false;
  objects_ = 0;
  return true;
}

void CEvents::beginSection(const Section &section) {
  const PxSection told = {section.number,          section.partOf,
                          section.format,          textOf(section.component),
                          textOf(section.version), extentOf(section.extent)};
  call(events_.beginSection, &told);
}

void CEvents::beginSummaryLine(SummaryKind kind, bool completed) {
  call(events_.beginSummaryLine, static_cast<int32_t>(kind), completed ? 1 : 0);
}

void CEvents::endSummaryLine(const std::vector<std::string> &types) {
  setTexts(types, &types_);
  call(events_.endSummaryLine, types_.data(), types_.size());
}

void CEvents::beginProperty(const Property &property) {
  if (!events_.beginProperty || stopped_) return;
  setTexts(property.types, &types_);
  values_.clear();
  parameters_.clear();
  told_.clear();
  for (const Parameter &parameter : property.parameters) {
    for (const std::string &value : parameter.values) values_.push_back(textOf(value));
  }
  size_t first = 0;
  for (const Parameter &parameter : property.parameters) {
    parameters_.push_back(parameterOf(parameter, first));
    first += parameter.values.size();
  }
  for (const PxParameter &parameter : parameters_) told_.push_back(&parameter);
  PxProperty told{};
  told.label = property.label;
  told.labelsGroup = property.labelsGroup ? 1 : 0;
  told.name = textOf(property.name);
  told.group = textOf(property.group);
  told.groupLabel = textOf(property.groupLabel);
  told.types = types_.data();
  told.typeCount = types_.size();
  told.parameters = told_.data();
  told.parameterCount = parameters_.size();
  told.extent = extentOf(property.extent);
  call(events_.beginProperty, &told);
}

PxParameter CEvents::parameterOf(const Parameter &parameter, size_t first) const {
  return {textOf(parameter.name), values_.data() + first, parameter.values.size()};
}

void CEvents::beginField(uint32_t label) { call(events_.beginField, label); }

void CEvents::text(std::string_view utf8) {
  if (!utf8.empty()) call(events_.text, utf8.data(), utf8.size());
}

void CEvents::lineBreak() { call(events_.lineBreak); }

void CEvents::object(const PlacedObject &object) {
  const PxObjectInfo told = {++objects_, textOf(object.title), textOf(object.declaredType),
                             extentOf(object.extent), object.size.value_or(PxUnknown)};
  call(events_.object, &told);
}

void CEvents::lateParameter(const Parameter &parameter) {
  setTexts(parameter.values, &values_);
  const PxParameter told = parameterOf(parameter, 0);
  call(events_.lateParameter, &told);
}

void CEvents::endProperty() { call(events_.endProperty); }

void CEvents::endSection() { call(events_.endSection); }

}  // namespace px

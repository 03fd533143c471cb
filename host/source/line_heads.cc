#include "host/source/line_heads.h"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>

#include "host/source/ascii_case.h"

namespace px {
namespace {

// Each text has a pair of slots. The first two are for heads that won't be found again.
size_t pairOf(std::string_view text) {
  return 2 + std::hash<std::string_view>()(text) % (LineHeads::Slots / 2 - 1) * 2;
}

}  // namespace

std::vector<std::string> typesOf(const std::vector<Parameter> &parameters) {
  const auto isType = [](const Parameter &parameter) { return parameter.name == "TYPE"; };
  const auto first = std::find_if(parameters.begin(), parameters.end(), isType);
  if (first == parameters.end()) return {};
  const bool isOnly = std::none_of(first + 1, parameters.end(), isType);
  if (isOnly && first->values.size() == 1) return {inSmallLetters(first->values.front())};
  std::vector<std::pair<int, std::string>> types;
  for (const Parameter &parameter : parameters) {
    if (parameter.name != "TYPE") continue;
    for (const std::string &value : parameter.values) {
      std::string small = inSmallLetters(value);
      const int number = knownType(small);
      types.emplace_back(number < 0 ? INT32_MAX : number, std::move(small));
    }
  }
  std::stable_sort(types.begin(), types.end(),
                   [](const auto &a, const auto &b) { return a.first < b.first; });
  std::vector<std::string> names;
  std::unordered_set<std::string> seen;
  for (auto &[number, name] : types) {
    if (seen.insert(name).second) names.push_back(std::move(name));
  }
  return names;
}

const LineHead *LineHeads::find(std::string_view text, uint32_t rules) {
  if (text.empty()) return nullptr;
  const auto holds = [&](size_t number) {
    return slots_[number] && slots_[number]->text == text && slots_[number]->rules == rules;
  };
  size_t number = followers_[last_];
  if (!holds(number)) {
    number = pairOf(text);
    if (!holds(number) && !holds(++number)) return nullptr;
    followers_[last_] = static_cast<uint8_t>(number);
  }
  last_ = number;
  return &slots_[number]->head;
}

LineHead *LineHeads::put(std::string_view text, uint32_t rules) {
  if (text.size() > LongestText) text = {};
  size_t number = text.empty() ? 0 : pairOf(text);
  if (number > 0 && slots_[number]) ++number;  // whoever comes first stays
  auto slot = std::make_unique<Slot>(Slot{std::string(text), rules, true, LineHead()});
  slot->head.slot = static_cast<uint8_t>(number);
  slots_[number] = std::move(slot);
  return &slots_[number]->head;
}

bool LineHeads::isNew(uint8_t slot) { return std::exchange(slots_[slot]->isNew, false); }

}  // namespace px

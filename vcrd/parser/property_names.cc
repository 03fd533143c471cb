#include "vcrd/parser/property_names.h"

namespace {

// The table's rows and the name outside it.
consteval std::array<VcardName, kPropertyNames.size() + 1> AllNames() {
  std::array<VcardName, kPropertyNames.size() + 1> names{};
  for (size_t row = 0; row < kPropertyNames.size(); ++row) names[row] = kPropertyNames[row];
  names[PropMsCardPicture] = {"ms-cardpicture"};
  return names;
}

constexpr auto kIndex = VcardMakeNameIndex(AllNames());

}  // namespace

VcardProperty VcardFindProperty(const VcardText &name) {
  const int32_t row = kIndex.Find(VcardKeyOf(name));
  return row < 0 ? PropOther : static_cast<VcardProperty>(row);
}

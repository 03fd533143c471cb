#include "vcrd/parser/property_names.h"

namespace {

// The table's rows and the name outside it.
consteval std::array<VcardName, kPropertyNames.size() + 1> AllNames() {
  std::array<VcardName, kPropertyNames.size() + 1> names{};
  for (size_t row = 0; row < kPropertyNames.size(); ++row) names[row] = kPropertyNames[row];
  names[PropMsCardPicture] = {"ms-cardpicture"};
  return names;
}

consteval bool AreShorterThanAKey() {
  for (const VcardName &name : AllNames()) {
    if (std::string_view(name.Text).size() >= kLongestName) return false;
  }
  return true;
}
static_assert(AreShorterThanAKey());

constexpr auto kIndex = VcardMakeNameIndex(AllNames());

}  // namespace

VcardProperty VcardFindProperty(const VcardText &name) {
  // The field has the form of a key: CopyTo has put NULs behind a short name, and no name is as
  // long as sixteen bytes without one.
  const int32_t row = kIndex.Find(VcardMakeKey(LoadBytes(name)));
  return row < 0 ? PropOther : static_cast<VcardProperty>(row);
}

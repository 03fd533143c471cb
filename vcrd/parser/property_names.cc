// The search is a hash table of the names, made when the library is compiled: a line costs one look
// instead of one comparison a name.

#include "vcrd/parser/property_names.h"

#include "vcrd/frame/text.h"

namespace {

constexpr VcardName kMsCardPicture = {"ms-cardpicture"};
constexpr uint32_t kBuckets = 256;

constexpr uint32_t AddToHash(uint32_t hash, char c) {
  return (hash ^ static_cast<uint8_t>(c)) * 16777619U;
}

constexpr const char *NameOf(int property) {
  return property == PropMsCardPicture ? kMsCardPicture.Text
                                       : kPropertyNames[static_cast<size_t>(property)].Text;
}

consteval std::array<uint8_t, kBuckets> MakeBuckets() {
  std::array<uint8_t, kBuckets> buckets{};
  buckets.fill(PropOther);
  for (int property = 0; property <= PropMsCardPicture; ++property) {
    if (property == PropX) continue;
    uint32_t hash = 0;
    for (const char *c = NameOf(property); *c != '\0'; ++c) hash = AddToHash(hash, *c);
    while (buckets[hash % kBuckets] != PropOther) ++hash;
    buckets[hash % kBuckets] = static_cast<uint8_t>(property);
  }
  return buckets;
}

constexpr std::array<uint8_t, kBuckets> kBucketTable = MakeBuckets();

}  // namespace

VcardProperty VcardFindProperty(const char *name) {
  VcardName lowered;
  uint32_t hash = 0;
  size_t length = 0;
  for (; name[length] != '\0'; ++length) {
    if (length == sizeof lowered.Text - 1) return PropOther;  // longer than any name
    lowered.Text[length] = VcardLowerLetter(name[length]);
    hash = AddToHash(hash, lowered.Text[length]);
  }
  lowered.Text[length] = '\0';
  for (;; ++hash) {
    const uint8_t property = kBucketTable[hash % kBuckets];
    if (property == PropOther || VcardSameText(lowered.Text, NameOf(property))) {
      return static_cast<VcardProperty>(property);
    }
  }
}

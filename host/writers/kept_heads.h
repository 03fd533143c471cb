// What was made of the heads of the properties that came lately, since most have one of the same
// few.
//
// A head is all that a Property tells but its place in the file.

#ifndef PX_HOST_WRITERS_KEPT_HEADS_H
#define PX_HOST_WRITERS_KEPT_HEADS_H

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "host/reading/card_events.h"

namespace px {

// A number that equal heads share and most others don't.
size_t numberOfHead(const Property &property);
bool isSameHead(const Property &a, const Property &b);
// Whether a head takes so much memory that it isn't to be kept.
bool isLongHead(const Property &property);

template <class Made>
class KeptHeads {
 public:
  // Answers what `make` makes of the property; valid until the next call.
  template <class Make>
  const Made &of(const Property &property, Make make) {
    std::unique_ptr<Kept> *pair = &kept_[numberOfHead(property) % (kept_.size() / 2) * 2];
    for (const Kept *kept : {pair[0].get(), pair[1].get()}) {
      if (kept && isSameHead(kept->property, property)) return kept->made;
    }
    if (isLongHead(property)) return long_ = make(property);
    std::unique_ptr<Kept> &kept = pair[0] ? pair[1] : pair[0];  // whoever comes first stays
    kept = std::make_unique<Kept>(Kept{property, make(property)});
    return kept->made;
  }

 private:
  struct Kept {
    Property property;
    Made made;
  };
  std::array<std::unique_ptr<Kept>, 256> kept_;  // most files need few
  Made long_;
};

}  // namespace px

#endif

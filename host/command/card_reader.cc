#include "host/command/card_reader.h"

#include <new>
#include <utility>

#include "host/languages/translation.h"

namespace px {

CardReader::CardReader() : reader_(PxNewReader()) {
  if (!reader_) throw std::bad_alloc();
  PxSetLanguage(reader_, language().c_str());
}

void CardReader::setFault(std::function<void(uint64_t, const char *)> fault) {
  fault_ = std::move(fault);
  const PxFault tell = [](void *self, uint64_t line, const char *text) {
    auto &reader = *static_cast<CardReader *>(self);
    reader.run([&] { reader.fault_(line, text); });
  };
  PxSetFault(reader_, tell, this);
}

int32_t CardReader::sink(void *self, const char *bytes, uint64_t size) {
  auto &reader = *static_cast<CardReader *>(self);
  return reader.run([&] { reader.write_({bytes, size}); });
}

bool CardReader::check(int32_t answer) {
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  if (answer < 0) throw CardError(PxErrorText(reader_));
  return answer == PxGood;
}

}  // namespace px

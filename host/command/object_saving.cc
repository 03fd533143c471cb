#include "host/command/object_saving.h"

#include "host/io/base64_io.h"
#include "host/io/positioned_io.h"

namespace px {
namespace {

struct Saving {
  CardReader *reader;
  ObjectExtraction *extraction;
  bool refused = false;  // the limit of the work on the input has ended an object
};

// An object that the library has opened. It is read forward only.
class OpenedObject final : public PositionedIo<OpenedObject> {
 public:
  OpenedObject(Saving *saving, uint64_t handle) : saving_(*saving), handle_(handle) {}

  int32_t close() {
    PxCloseObject(saving_.reader->get(), handle_);
    delete this;
    return 0;
  }

  int32_t readAt(uint64_t, void *to, uint32_t size, uint32_t *count) {
    uint64_t got = 0;
    last_ = PxReadObject(saving_.reader->get(), handle_, to, size, &got);
    *count = static_cast<uint32_t>(got);
    saving_.refused |= last_ == PxErrorLimit;
    return last_ >= PxGood || last_ == PxErrorDamaged ? 0 : IoFailed;
  }

  int32_t getInfo(uint32_t selector, void *argument) {
    if (selector != InfoBadBase64Byte) return PositionedIo::getInfo(selector, argument);
    static_cast<BadBase64Byte *>(argument)->found = last_ == PxErrorDamaged;
    return 0;
  }

 private:
  Saving &saving_;
  const uint64_t handle_;
  int32_t last_ = PxGood;  // answer
};

class ObjectOfSection final : public PlacedObject {
 public:
  ObjectOfSection(Saving *saving, const PxObjectInfo &object)
      : saving_(saving), number_(object.number) {
    title.assign(object.title.bytes, object.title.size);
  }

  OpenIo open() const override {
    uint64_t handle = 0;
    saving_->reader->check(PxOpenObject(saving_->reader->get(), number_, &handle));
    return OpenIo(new OpenedObject(saving_, handle));
  }

 private:
  Saving *saving_;
  const uint32_t number_;
};

int32_t beginSection(void *user, const PxSection *from) {
  auto &saving = *static_cast<Saving *>(user);
  return saving.reader->run([&] {
    Section section;
    section.number = from->number;
    saving.extraction->beginSection(section);
  });
}

int32_t beginProperty(void *user, const PxProperty *from) {
  auto &saving = *static_cast<Saving *>(user);
  return saving.reader->run([&] {
    Property property;
    property.label = from->label;
    property.name.assign(from->name.bytes, from->name.size);
    saving.extraction->beginProperty(property);
  });
}

int32_t object(void *user, const PxObjectInfo *from) {
  auto &saving = *static_cast<Saving *>(user);
  return saving.reader->run([&] {
    try {
      saving.extraction->object(ObjectOfSection(&saving, *from));
    } catch (const std::runtime_error &) {
      if (!saving.refused) throw;  // otherwise the reader tells it, behind this section
    }
  });
}

}  // namespace

bool saveObjects(CardReader *reader, ObjectExtraction *extraction) {
  Saving saving{reader, extraction};
  PxEvents events{};
  events.size = sizeof events;
  events.beginSection = beginSection;
  events.beginProperty = beginProperty;
  events.object = object;
  return reader->check(PxReadEvents(reader->get(), &events, &saving));
}

}  // namespace px

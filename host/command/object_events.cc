#include "host/command/object_events.h"

#include "host/io/base64_io.h"
#include "host/io/positioned_io.h"

namespace px {
namespace {

struct ObjectPass {
  CardReader *reader;
  CardEvents *target;
  bool refused = false;  // the limit of the work on the input has ended an object
};

// An object that the library has opened. It is read forward only.
class OpenedObject final : public PositionedIo<OpenedObject> {
 public:
  OpenedObject(ObjectPass *pass, uint64_t handle) : pass_(*pass), handle_(handle) {}

  int32_t close() {
    PxCloseObject(pass_.reader->get(), handle_);
    delete this;
    return 0;
  }

  int32_t readAt(uint64_t, void *to, uint32_t size, uint32_t *count) {
    uint64_t got = 0;
    last_ = PxReadObject(pass_.reader->get(), handle_, to, size, &got);
    *count = static_cast<uint32_t>(got);
    pass_.refused |= last_ == PxErrorLimit;
    return last_ >= PxGood || last_ == PxErrorDamaged ? 0 : IoFailed;
  }

  int32_t getInfo(uint32_t selector, void *argument) {
    if (selector != InfoBadBase64Byte) return PositionedIo::getInfo(selector, argument);
    static_cast<BadBase64Byte *>(argument)->found = last_ == PxErrorDamaged;
    return 0;
  }

 private:
  ObjectPass &pass_;
  const uint64_t handle_;
  int32_t last_ = PxGood;  // answer
};

class ObjectOfSection final : public PlacedObject {
 public:
  ObjectOfSection(ObjectPass *pass, const PxObjectInfo &object)
      : pass_(pass), number_(object.number) {
    title.assign(object.title.bytes, object.title.size);
  }

  OpenIo open() const override {
    uint64_t handle = 0;
    pass_->reader->check(PxOpenObject(pass_->reader->get(), number_, &handle));
    return OpenIo(new OpenedObject(pass_, handle));
  }

 private:
  ObjectPass *pass_;
  const uint32_t number_;
};

int32_t beginSection(void *user, const PxSection *from) {
  auto &pass = *static_cast<ObjectPass *>(user);
  return pass.reader->run([&] {
    Section section;
    section.number = from->number;
    pass.target->beginSection(section);
  });
}

int32_t beginProperty(void *user, const PxProperty *from) {
  auto &pass = *static_cast<ObjectPass *>(user);
  return pass.reader->run([&] {
    Property property;
    property.label = from->label;
    property.name.assign(from->name.bytes, from->name.size);
    pass.target->beginProperty(property);
  });
}

int32_t object(void *user, const PxObjectInfo *from) {
  auto &pass = *static_cast<ObjectPass *>(user);
  return pass.reader->run([&] {
    try {
      pass.target->object(ObjectOfSection(&pass, *from));
    } catch (const std::runtime_error &) {
      if (!pass.refused) throw;  // otherwise the reader tells it, behind this section
    }
  });
}

}  // namespace

bool readObjects(CardReader *reader, CardEvents *target) {
  ObjectPass pass{reader, target};
  PxEvents events{};
  events.size = sizeof events;
  events.beginSection = beginSection;
  events.beginProperty = beginProperty;
  events.object = object;
  return reader->check(PxReadEvents(reader->get(), &events, &pass));
}

}  // namespace px

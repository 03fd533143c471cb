// The C interface: arguments are checked, one thread at a time let in, exceptions made results.

#include "px/cards.h"

#include <cstddef>
#include <new>
#include <string>
#include <string_view>

#include "host/labels/label_texts.h"
#include "host/labels/property_labels.h"
#include "host/languages/translation.h"
#include "host/library/reader.h"
#include "host/library/result.h"
#include "host/library/sized_record.h"
#include "px/version.h"

namespace px {
namespace {

int32_t fail(PxReader *reader, int32_t result, const char *text = nullptr) {
  reader->error = text ? text : PxResultText(result);
  reader->errorNumber = 0;
  return result;
}

void forgetError(PxReader *reader) { fail(reader, PxGood, ""); }

// Runs `step`, which answers a result.
template <class Step>
int32_t run(PxReader *reader, Step step) noexcept {
  forgetError(reader);
  const LanguageOfThread speaks(reader->reader.language);
  try {
    const int32_t result = step(reader->reader);
    forgetError(reader);  // an event may have made a mistake
    return result;
  } catch (...) {
    int number;
    const int32_t result = resultOfException(PxErrorRead, &number, &reader->errorText);
    fail(reader, result, reader->errorText.empty() ? nullptr : reader->errorText.c_str());
    reader->errorNumber = number;
    return result;
  }
}

// The same for the calls that may come from anywhere but another thread or an event. `sound` tells
// that the arguments are.
template <class Step>
int32_t enter(PxReader *reader, bool sound, Step step) noexcept {
  if (!reader) return PxErrorArgument;
  if (!reader->use.begin()) {
    const bool inEvent = reader->use.byThisThread();
    return inEvent ? fail(reader, PxErrorBusy, "the call isn't one for an event") : PxErrorBusy;
  }
  const int32_t result = sound ? run(reader, step) : fail(reader, PxErrorArgument);
  reader->use.end();
  return result;
}

// The same for those that an event may make.
template <class Step>
int32_t enterWithin(PxReader *reader, bool sound, Step step) noexcept {
  if (!reader) return PxErrorArgument;
  if (!reader->use.byThisThread()) return enter(reader, sound, step);
  return sound ? run(reader, step) : fail(reader, PxErrorArgument);
}

std::string_view viewOf(const char *text) { return text ? text : ""; }

const char *inLanguage(std::string_view english, const char *tag) noexcept {
  try {
    const LanguageOfThread speaks(findLanguage(viewOf(tag)));
    if (const std::string_view text = tr(english); !text.empty()) return text.data();
  } catch (...) {  // without memory there is no catalogue
  }
  return english.empty() ? "" : english.data();
}

}  // namespace
}  // namespace px

using px::enter;
using px::enterWithin;
using px::Reader;

extern "C" {

PxReader *PxNewReader(void) { return new (std::nothrow) PxReader(); }

int32_t PxFreeReader(PxReader **reader) {
  if (!reader) return PxErrorArgument;
  if (!*reader) return PxGood;
  if (!(*reader)->use.begin()) return PxErrorBusy;
  delete *reader;
  *reader = nullptr;
  return PxGood;
}

const char *PxErrorText(const PxReader *reader) {
  if (!reader) return "the reader is null";
  if (reader->use.byThisThread()) return reader->error;
  if (!reader->use.begin()) return PxResultText(PxErrorBusy);
  const char *text = reader->error;
  reader->use.end();
  return text;
}

int32_t PxErrorNumber(const PxReader *reader) {
  if (!reader) return 0;
  if (reader->use.byThisThread()) return reader->errorNumber;
  if (!reader->use.begin()) return 0;
  const int32_t number = reader->errorNumber;
  reader->use.end();
  return number;
}

const char *PxVersion(void) { return PX_VERSION; }

int32_t PxSetFault(PxReader *reader, PxFault fault, void *user) {
  return enter(reader, true, [=](Reader &inner) {
    inner.settings.fault = fault;
    inner.settings.faultUser = user;
    return PxGood;
  });
}

int32_t PxSetRaw(PxReader *reader, int32_t raw) {
  return enter(reader, true, [=](Reader &inner) {
    inner.settings.raw = raw != 0;
    return PxGood;
  });
}

int32_t PxSetLimit(PxReader *reader, int32_t limit) {
  return enter(reader, true, [=](Reader &inner) {
    inner.settings.limited = limit != 0;
    return PxGood;
  });
}

int32_t PxSetLanguage(PxReader *reader, const char *language) {
  return enter(reader, true, [=](Reader &inner) {
    const px::Language *found = language ? px::findLanguage(language) : nullptr;
    if (language && !found) throw px::Failure(PxErrorArgument, "no texts in that language");
    inner.language = found;
    return PxGood;
  });
}

int32_t PxOpenFile(PxReader *reader, const char *path) {
  return enter(reader, path != nullptr, [=](Reader &inner) {
    inner.close();
    inner.open(px::openFileInput(path), path);
    return PxGood;
  });
}

int32_t PxOpenMemory(PxReader *reader, const void *bytes, uint64_t size) {
  return enter(reader, bytes || size == 0, [=](Reader &inner) {
    inner.close();
    inner.open(px::openMemoryInput(bytes, size), {});
    return PxGood;
  });
}

int32_t PxOpenIo(PxReader *reader, VcardIo *io) {
  const bool sound = io && io->Read && io->Seek && io->GetInfo;
  return enter(reader, sound, [=](Reader &inner) {
    inner.close();
    inner.open(px::openCallerInput(io, &reader->use), {});
    return PxGood;
  });
}

int32_t PxClose(PxReader *reader) {
  return enter(reader, true, [](Reader &inner) {
    inner.close();
    return PxGood;
  });
}

int32_t PxSetName(PxReader *reader, const char *name) {
  return enter(reader, name != nullptr, [=](Reader &inner) {
    inner.setName(name);
    return PxGood;
  });
}

int32_t PxReadJson(PxReader *reader, PxText *json) {
  return enter(reader, json != nullptr, [=](Reader &inner) { return inner.readJson(json); });
}

int32_t PxWriteJson(PxReader *reader, PxSink sink, void *user) {
  return enter(reader, sink != nullptr, [=](Reader &inner) { return inner.writeJson(sink, user); });
}

int32_t PxWriteJsonError(const char *file, const char *error, PxSink sink, void *user) {
  if (!file || !error || !sink) return PxErrorArgument;
  try {
    return px::writeJsonError(file, error, {sink, user});
  } catch (...) {
    int number;
    std::string text;
    return px::resultOfException(PxErrorInternal, &number, &text);
  }
}

int32_t PxReadEvents(PxReader *reader, const PxEvents *events, void *user) {
  return enter(reader, events != nullptr,
               [=](Reader &inner) { return inner.readEvents(events, user); });
}

int32_t PxWriteText(PxReader *reader, const PxLook *look, PxSink sink, void *user) {
  constexpr size_t kFirst = offsetof(PxLook, color) + sizeof(PxLook::color);
  PxLook taken{};
  const bool sound = sink && (!look || px::takeRecord(*look, kFirst, &taken));
  return enter(reader, sound, [=](Reader &inner) {
    const px::TextLook as = look ? px::TextLook{taken.width, taken.color != 0} : px::TextLook{};
    return inner.writeText(as, sink, user);
  });
}

int32_t PxWriteTrace(PxReader *reader, PxSink sink, void *user) {
  return enter(reader, sink != nullptr,
               [=](Reader &inner) { return inner.writeTrace(sink, user); });
}

int32_t PxBeginPage(PxReader *reader, const char *title, int32_t several, PxSink sink, void *user) {
  return enter(reader, title && sink,
               [=](Reader &inner) { return inner.beginPage(title, several != 0, sink, user); });
}

int32_t PxWriteHtml(PxReader *reader) {
  return enter(reader, true, [](Reader &inner) { return inner.writeHtml(); });
}

int32_t PxTellOnPage(PxReader *reader, const char *file, const char *text) {
  return enter(reader, file && text, [=](Reader &inner) { return inner.tellOnPage(file, text); });
}

int32_t PxEndPage(PxReader *reader) {
  return enter(reader, true, [](Reader &inner) { return inner.endPage(); });
}

int32_t PxNextDocument(PxReader *reader, int16_t *format, VcardIo **view) {
  return enter(reader, format && view,
               [=](Reader &inner) { return inner.nextDocument(format, view); });
}

int32_t PxObjectCount(PxReader *reader, uint32_t *count) {
  return enterWithin(reader, count != nullptr, [=](Reader &inner) {
    *count = inner.objectCount();
    return PxGood;
  });
}

int32_t PxOpenObject(PxReader *reader, uint32_t number, uint64_t *handle) {
  return enterWithin(reader, handle != nullptr, [=](Reader &inner) {
    *handle = inner.openObject(number);
    return PxGood;
  });
}

int32_t PxReadObject(PxReader *reader, uint64_t handle, void *to, uint64_t size, uint64_t *count) {
  return enterWithin(reader, count && (to || size == 0), [=](Reader &inner) {
    return inner.readObject(handle, static_cast<char *>(to), size, count);
  });
}

int32_t PxCloseObject(PxReader *reader, uint64_t handle) {
  return enterWithin(reader, true, [=](Reader &inner) {
    inner.closeObject(handle);
    return PxGood;
  });
}

const char *PxLabelText(uint32_t label, const char *language) {
  return px::inLanguage(px::labelText(label), language);
}

const char *PxPropertyLabel(uint32_t label, const char *name, const char *language) {
  return px::inLanguage(px::propertyLabel(label, px::viewOf(name)), language);
}

const char *PxTypeLabel(const char *type, const char *language) {
  const std::string_view given = px::viewOf(type), label = px::typeLabel(given);
  return label.data() == given.data() ? given.data() : px::inLanguage(label, language);
}

const char *PxParameterLabel(const char *name, const char *language) {
  return px::inLanguage(px::parameterLabel(px::viewOf(name)), language);
}

}  // extern "C"

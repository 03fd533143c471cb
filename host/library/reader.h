// What stands behind a PxReader: an input that is open, and how far it was read.

#ifndef PX_HOST_LIBRARY_READER_H
#define PX_HOST_LIBRARY_READER_H

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/languages/translation.h"
#include "host/library/c_events.h"
#include "host/library/input.h"
#include "host/library/section_objects.h"
#include "host/library/use.h"
#include "host/reading/section_reader.h"
#include "host/writers/html_writer.h"
#include "host/writers/json_writer.h"
#include "host/writers/text_look.h"
#include "px/cards.h"

namespace px {

// The bytes that a writer gives, on their way to a sink of the caller's.
struct CallerSink {
  PxSink routine = nullptr;
  void *user = nullptr;
  bool stopped = false;

  void put(std::string_view bytes) {
    if (!stopped && !bytes.empty()) stopped = routine(user, bytes.data(), bytes.size()) != 0;
  }
};

int32_t writeJsonError(std::string_view file, std::string_view error, CallerSink sink);

// The members that do something throw Failure, and other exceptions as what they call does.
class Reader {
 public:
  struct Settings {
    PxFault fault = nullptr;
    void *faultUser = nullptr;
    bool raw = false;
    bool limited = true;
  };
  Settings settings;  // for the next input

  const Language *language = nullptr;  // that it speaks; null: English

  // `input` is the input to open, named `name`.
  void open(std::unique_ptr<Input> input, std::string name);
  void close() noexcept;
  void setName(std::string_view name);

  // These answer PxGood, PxEnd or PxStopped.
  int32_t readJson(PxText *json);
  int32_t writeJson(PxSink sink, void *user);
  int32_t readEvents(const PxEvents *events, void *user);
  int32_t writeText(const TextLook &look, PxSink sink, void *user);
  int32_t writeTrace(PxSink sink, void *user);

  int32_t beginPage(std::string_view title, bool several, PxSink sink, void *user);
  int32_t writeHtml();
  int32_t tellOnPage(std::string_view file, std::string_view text);
  int32_t endPage();

  int32_t nextDocument(int16_t *format, VcardIo **view);

  uint32_t objectCount() const { return objects_.count(); }
  uint64_t openObject(uint32_t number);
  int32_t readObject(uint64_t handle, char *to, uint64_t size, uint64_t *count);
  void closeObject(uint64_t handle);

 private:
  template <class Step>
  auto reading(Step step);
  bool readSection(CardEvents *target);
  bool readJsonSection();
  // How an input is read: each has one way, to its end.
  enum class Way { None, Sections, Documents, Trace };
  void begin(Way way);
  HtmlWriter &openPage();
  void endObjects();
  FaultSink faultSink() const;
  Reading how() const { return opened_.raw ? Reading::Raw : Reading::Viewed; }
  void checkLimit() const;

  std::unique_ptr<Input> input_;
  Settings opened_;  // what held when it was
  std::optional<WorkLimit> limit_;
  std::optional<Documents> documents_;
  std::optional<SectionReader> sections_;
  Way way_ = Way::None;
  bool anySection_ = false;
  int32_t failure_ = PxGood;  // ends the reading
  int failureNumber_ = 0;
  std::string failureText_;

  SectionObjects objects_;
  CEvents events_;
  CallerSink sink_;
  std::optional<JsonWriter> json_;
  std::string name_;
  std::string text_;  // of readJson

  std::optional<HtmlWriter> page_;
  CallerSink pageSink_;

  std::map<uint64_t, OpenIo> handles_;
  uint64_t lastHandle_ = 0;
};

}  // namespace px

struct PxReader {
  mutable px::InUse use;
  px::Reader reader;
  const char *error = "";  // of the last call
  int errorNumber = 0;
  std::string errorText;   // where it needs one of its own
};

#endif

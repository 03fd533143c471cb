#include "host/library/reader.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "host/filter/card_run.h"
#include "host/io/base64_io.h"
#include "host/library/result.h"
#include "host/saving/content_type.h"
#include "host/source/text_decoder.h"
#include "host/writers/file_text.h"
#include "host/writers/trace_writer.h"

namespace px {
namespace {

std::string contentTypeOf(const void *bytes, size_t size) {
  return std::string(guessContentType({static_cast<const char *>(bytes), size}).mime);
}

bool isEmpty(VcardIo *io) {
  char byte;
  uint32_t count = 0;
  return readIoAt(io, 0, &byte, 1, &count) == 0 && count == 0;
}

const FilterLibrary &filter() {
  try {
    return filterLibrary();
  } catch (const std::runtime_error &error) {
    throw Failure(PxErrorFilter, error.what());
  }
}

}  // namespace

void Reader::open(std::unique_ptr<Input> input, std::string name) {
  close();
  filter();
  input_ = std::move(input);
  opened_ = settings;
  limit_.emplace(opened_.limited);
  name_ = std::move(name);
}

void Reader::close() noexcept {
  endObjects();
  sections_.reset();
  documents_.reset();
  json_.reset();
  input_.reset();
  way_ = Way::None;
  anySection_ = false;
  failure_ = PxGood;
}

void Reader::setName(std::string_view name) {
  if (!input_) throw Failure(PxErrorOrder, "no input is open");
  name_ = name;
  // A section that an error has cut short is not closed any more.
  if (json_ && failure_ == PxGood) json_->beginFile(name_);
}

void Reader::endObjects() {
  handles_.clear();
  objects_.forget();
}

FaultSink Reader::faultSink() const {
  return [fault = opened_.fault, user = opened_.faultUser](uint64_t line, const std::string &text) {
    if (fault) fault(user, line, text.c_str());
  };
}

// Comes before any step. What has ended the reading ends it in every way.
void Reader::begin(Way way) {
  if (!input_) throw Failure(PxErrorOrder, "no input is open");
  if (failure_ != PxGood) throw Failure(failure_, failureText_, failureNumber_);
  if (way_ != Way::None && (way_ != way || way == Way::Trace)) {
    throw Failure(PxErrorOrder, "the input is read in another way");
  }
  way_ = way;
}

// Takes a step that reads the input. What ends it ends every later one.
template <class Step>
auto Reader::reading(Step step) {
  endObjects();
  try {
    auto result = step();
    input_->check();  // a failure has looked like the end of the input to the filter
    return result;
  } catch (...) {
    // What isn't told as a failure of the input or of a temporary file is that there is no card.
    failure_ = resultOfException(anySection_ ? PxErrorRead : PxErrorNotCards, &failureNumber_,
                                 &failureText_);
  }
  try {
    input_->check();  // knows better why
  } catch (...) {
    failure_ = resultOfException(PxErrorRead, &failureNumber_, &failureText_);
  }
  if (failure_ == PxErrorNotCards && isEmpty(input_->io())) failureText_ = "is empty";
  endObjects();
  if (failureText_.empty()) failureText_ = PxResultText(failure_);
  throw Failure(failure_, failureText_, failureNumber_);
}

bool Reader::readSection(CardEvents *target) {
  objects_.setTarget(target);
  if (!sections_) {
    sections_.emplace(filter(), input_->io(), how(), faultSink(), &objects_, &*limit_);
  }
  const bool any = sections_->readSection();
  anySection_ |= any;
  if (!any) checkLimit();
  return any;
}

// The last section before the limit is given whole; this ends the reading behind it.
void Reader::checkLimit() const {
  if (!limit_->stoppedAt()) return;
  throw Failure(PxErrorLimit, "more work than its size allows; stopped at byte " +
                                  std::to_string(*limit_->stoppedAt()));
}

// JSON. The writer gives all of a section in pieces, with a line end behind it.

bool Reader::readJsonSection() {
  if (!json_) {
    json_.emplace(JsonForm::Lines, contentTypeOf, [this](std::string_view bytes) {
      if (bytes.ends_with('\n')) bytes.remove_suffix(1);
      if (sink_.routine) {
        sink_.put(bytes);
      } else {
        text_ += bytes;
      }
    });
    json_->beginFile(name_);
  }
  const bool any = readSection(&*json_);
  json_->flush();
  return any;
}

int32_t Reader::readJson(PxText *json) {
  begin(Way::Sections);
  sink_ = {};
  text_.clear();
  if (!reading([this] { return readJsonSection(); })) return PxEnd;
  *json = {text_.c_str(), text_.size()};
  return PxGood;
}

int32_t Reader::writeJson(PxSink sink, void *user) {
  begin(Way::Sections);
  sink_ = {sink, user};
  try {
    if (!reading([this] { return readJsonSection(); })) return PxEnd;
  } catch (...) {
    if (json_) {
      json_->beginFile(name_);  // closes the section
      json_->flush();
    }
    throw;
  }
  return sink_.stopped ? PxStopped : PxGood;
}

int32_t writeJsonError(std::string_view file, std::string_view error, CallerSink sink) {
  JsonWriter json(JsonForm::Elements, contentTypeOf, [&sink](std::string_view bytes) {
    if (bytes.starts_with('\n')) bytes.remove_prefix(1);
    sink.put(bytes);
  });
  json.error(file, error);
  json.flush();
  return sink.stopped ? PxStopped : PxGood;
}

int32_t Reader::readEvents(const PxEvents *events, void *user) {
  if (!events_.begin(events, user)) throw Failure(PxErrorArgument, "events of an unknown kind");
  begin(Way::Sections);
  if (!reading([this] { return readSection(&events_); })) return PxEnd;
  return events_.stopped() ? PxStopped : PxGood;
}

int32_t Reader::writeText(const TextLook &look, PxSink sink, void *user) {
  begin(Way::Sections);
  sink_ = {sink, user};
  FileText text(look, contentTypeOf, [this](std::string_view bytes) { sink_.put(bytes); });
  const auto step = [&] {
    const bool follows = readSection(&text);
    if (!follows) text.finish();
    return follows;
  };
  bool any = false;
  try {
    while (!sink_.stopped && reading(step)) any = true;
  } catch (...) {
    text.finish();
    throw;
  }
  if (sink_.stopped) return PxStopped;
  return any ? PxGood : PxEnd;
}

int32_t Reader::writeTrace(PxSink sink, void *user) {
  struct Stopped {};
  begin(Way::Trace);
  sink_ = {sink, user};
  TraceWriter trace([this](std::string_view line) {
    text_.assign(line) += '\n';
    sink_.put(text_);
    if (sink_.stopped) throw Stopped();
  });
  const auto traceAll = [&] {
    documents_.emplace(input_->io(), Reading::Raw, FaultSink(), &*limit_);
    Documents::Document document;
    documents_->next(&document);
    CardRun run(filter(), document.io, &trace);
    openRun(&run, document.format, &*documents_);
    try {
      run.readAll();
    } catch (const Stopped &) {
      return false;
    }
    if (run.gaveUp()) documents_->stop(0);
    checkLimit();
    return true;
  };
  return reading(traceAll) ? PxGood : PxStopped;
}

// The page.

HtmlWriter &Reader::openPage() {
  if (!page_) throw Failure(PxErrorOrder, "no page is open");
  return *page_;
}

int32_t Reader::beginPage(std::string_view title, bool several, PxSink sink, void *user) {
  if (page_) throw Failure(PxErrorOrder, "a page is open");
  pageSink_ = {sink, user};
  page_.emplace(contentTypeOf, [this](std::string_view bytes) { pageSink_.put(bytes); });
  try {
    page_->begin(asUtf8(title), several);
  } catch (...) {
    page_.reset();
    throw;
  }
  return pageSink_.stopped ? PxStopped : PxGood;
}

int32_t Reader::writeHtml() {
  HtmlWriter &page = openPage();
  begin(Way::Sections);
  page.beginFile(asUtf8(name_));
  bool any = false;
  while (!pageSink_.stopped && reading([&] { return readSection(&page); })) any = true;
  page.flush();
  if (pageSink_.stopped) return PxStopped;
  return any ? PxGood : PxEnd;
}

int32_t Reader::tellOnPage(std::string_view file, std::string_view text) {
  openPage().error(asUtf8(file), asUtf8(text));
  return pageSink_.stopped ? PxStopped : PxGood;
}

int32_t Reader::endPage() {
  openPage().end();
  page_.reset();
  return pageSink_.stopped ? PxStopped : PxGood;
}

int32_t Reader::nextDocument(int16_t *format, VcardIo **view) {
  begin(Way::Documents);
  Documents::Document document;
  const bool any = reading([&] {
    if (!documents_) documents_.emplace(input_->io(), how(), faultSink(), &*limit_);
    const bool follows = documents_->next(&document);
    if (!follows) checkLimit();
    return follows;
  });
  if (!any) return PxEnd;
  *format = document.format;
  *view = document.io;
  return PxGood;
}

// Objects.

uint64_t Reader::openObject(uint32_t number) {
  if (number == 0 || number > objects_.count()) throw Failure(PxErrorObject);
  handles_[lastHandle_ + 1] = sections_->openObject(objects_.place(number));
  return ++lastHandle_;
}

int32_t Reader::readObject(uint64_t handle, char *to, uint64_t size, uint64_t *count) {
  const auto found = handles_.find(handle);
  if (found == handles_.end()) throw Failure(PxErrorObject);
  VcardIo *content = found->second.get();
  uint64_t done = 0;
  while (done < size) {
    uint32_t got = 0;
    const auto room = static_cast<uint32_t>(std::min<uint64_t>(size - done, UINT32_MAX));
    if (content->Read(content, to + done, room, &got) != 0) {
      input_->check();  // knows better why
      throw Failure(sections_->isRefused() ? PxErrorLimit : PxErrorRead);
    }
    if (got == 0) break;
    done += got;
  }
  *count = done;
  if (done > 0 || size == 0) return PxGood;
  input_->check();  // a failure has looked like the end
  if (badBase64Byte(content).found) throw Failure(PxErrorDamaged);
  return PxEnd;
}

void Reader::closeObject(uint64_t handle) {
  if (handles_.erase(handle) == 0) throw Failure(PxErrorObject);
}

}  // namespace px

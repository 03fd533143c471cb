#include "host/source/text_decoder.h"

#include <uchardet/uchardet.h>

#include <cerrno>
#include <utility>

#include "host/source/ascii_case.h"
#include "host/source/utf8.h"

namespace px {
namespace {

constexpr char kFallback[] = "WINDOWS-1252";
constexpr std::string_view kReplacement = "\uFFFD";

// Sets that are meant when the name of an older and smaller one is given.
constexpr std::pair<std::string_view, const char *> kLarger[] = {
    {"SHIFT_JIS", "CP932"}, {"SHIFT-JIS", "CP932"}, {"SJIS", "CP932"},          {"X-SJIS", "CP932"},
    {"BIG5", "BIG5-HKSCS"}, {"GB2312", "GB18030"},  {"KS_C_5601-1987", "CP949"}};

const char *largerSet(const std::string &set) {
  for (const auto &[name, larger] : kLarger) {
    if (equalsNoCase(set, name)) return larger;
  }
  return set.c_str();
}

}  // namespace

bool isUtf8(std::string_view bytes, size_t *open) {
  bool cut;
  const size_t valid = validUtf8Length(bytes, &cut);
  *open = bytes.size() - valid;
  return *open == 0 || cut;
}

std::string asUtf8(std::string_view bytes) {
  std::string text;
  TextDecoder decoder;
  decoder.beginUtf8();
  decoder.put(bytes, &text);
  decoder.finish(&text);
  return text;
}

bool TextDecoder::begin(const std::string &set) {
  if (set != openedSet_ || !opened_) {
    // A suffix such as //TRANSLIT is no part of a name.
    if (set.empty() || set.find('/') != set.npos) return false;
    iconv_t converter = iconv_open("UTF-8", largerSet(set));
    if (converter == reinterpret_cast<iconv_t>(-1)) return false;
    opened_.reset(converter);
    openedSet_ = set;
  }
  converter_ = opened_.get();
  iconv(converter_, nullptr, nullptr, nullptr, nullptr);
  return true;
}

void TextDecoder::replace(std::string *utf8) {
  *utf8 += kReplacement;
  good_ = false;
}

void TextDecoder::put(std::string_view bytes, std::string *utf8) {
  const std::string held = std::exchange(held_, {});
  const auto decode = [this, utf8](std::string_view all) {
    converter_ ? convert(all, utf8) : putUtf8(all, utf8);
  };
  held.empty() ? decode(bytes) : decode(held + std::string(bytes));
}

void TextDecoder::putUtf8(std::string_view bytes, std::string *utf8) {
  while (!bytes.empty()) {
    bool open;
    const size_t valid = validUtf8Length(bytes, &open);
    utf8->append(bytes, 0, valid);
    bytes.remove_prefix(valid);
    if (open) {
      held_ = bytes;
      return;
    }
    if (bytes.empty()) return;
    replace(utf8);
    bytes.remove_prefix(1);
  }
}

void TextDecoder::convert(std::string_view bytes, std::string *utf8) {
  char *in = const_cast<char *>(bytes.data());  // iconv doesn't write there
  size_t left = bytes.size();
  while (left > 0) {
    char buffer[1024];
    char *out = buffer;
    size_t room = sizeof buffer;
    const size_t result = iconv(converter_, &in, &left, &out, &room);
    const int error = errno;
    // Some sets have NULs, and numbers that are no characters.
    putUtf8({buffer, static_cast<size_t>(out - buffer)}, utf8);
    if (result != static_cast<size_t>(-1) || error == E2BIG) continue;
    if (error == EINVAL) {
      held_.assign(in, left);
      return;
    }
    replace(utf8);
    ++in;
    --left;
  }
}

bool TextDecoder::finish(std::string *utf8) {
  if (!held_.empty()) replace(utf8);
  held_.clear();
  if (converter_) {
    // Some sets hold a character back until they know that no mark for it follows.
    char buffer[64];
    char *out = buffer;
    size_t room = sizeof buffer;
    iconv(converter_, nullptr, nullptr, &out, &room);
    utf8->append(buffer, out);
  }
  const bool good = good_;
  good_ = true;
  converter_ = nullptr;
  return good;
}

void CharsetGuess::Delete::operator()(uchardet *detector) const { uchardet_delete(detector); }

CharsetGuess::CharsetGuess() : detector_(uchardet_new()) {}

void CharsetGuess::put(std::string_view bytes) {
  if (detector_) uchardet_handle_data(detector_.get(), bytes.data(), bytes.size());
}

std::string CharsetGuess::finish() {
  if (!detector_) return kFallback;
  uchardet_data_end(detector_.get());
  std::string set = uchardet_get_charset(detector_.get());
  // ISO 8859-1 has control characters where windows-1252 has letters; nobody means those.
  const bool tellsNothing = set.empty() || set == "ASCII" || set == "UTF-8" || set == "ISO-8859-1";
  if (tellsNothing || !TextDecoder().begin(set)) return kFallback;
  return set;
}

}  // namespace px

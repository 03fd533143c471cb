#include "bench/sample_texts.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

namespace px::bench {

namespace {

class Numbers {
 public:
  uint32_t below(uint32_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<uint32_t>(state_ >> 33) % limit;
  }

 private:
  uint64_t state_ = 1;
};

template <size_t Count>
const char *pick(const char *const (&words)[Count], Numbers &numbers) {
  return words[numbers.below(Count)];
}

constexpr const char *kGiven[] = {"Ada", "Ben", "Clara", "David", "Elena", "Farid", "Grete"};
constexpr const char *kFamily[] = {"Ashdown", "Birkeland", "Castellan", "Dvorin", "Ekwall"};
constexpr const char *kTitle[] = {"Engineer", "Head of Sales", "Secretary", "Archivist"};
constexpr const char *kWords[] = {"meets",   "every",  "Tuesday", "at",  "the",
                                  "harbour", "office", "with",    "two", "colleagues",
                                  "and",     "a",      "thermos", "of",  "tea"};
constexpr const char *kUtf8Words[] = {"trifft", "größere", "Gruppen", "im",   "Büro", "für",
                                      "Öl",     "und",     "Käse",    "“zu”", "fünf", "€"};
constexpr const char *kQpWords[] = {"gr=C3=B6=C3=9Fere", "Gruppen", "im",        "B=C3=BCro",
                                    "f=C3=BCr",          "und",     "K=C3=A4se", "zu=20zweit"};

void addBase64(std::string *text, size_t bytes, Numbers &numbers) {
  constexpr std::string_view digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (size_t line = 0; line < bytes; line += 72) {
    *text += "\r\n ";
    for (int i = 0; i < 72; ++i) *text += digits[numbers.below(64)];
  }
  *text += "\r\n\r\n";
}

template <size_t Count>
void addNote(std::string *text, const char *const (&words)[Count], const char *fold,
             Numbers &numbers) {
  for (int line = 0; line < 6; ++line) {
    if (line > 0) *text += fold;
    for (int word = 0; word < 10; ++word) {
      *text += pick(words, numbers);
      if (word < 9) *text += ' ';
    }
  }
  *text += "\r\n";
}

void addCard(std::string *text, Kind kind, Numbers &numbers) {
  const bool version3 = kind == Kind::Utf8;
  const char *const given = pick(kGiven, numbers);
  const char *const family = pick(kFamily, numbers);
  char line[512];
  std::snprintf(line, sizeof line,
                "BEGIN:VCARD\r\nVERSION:%s\r\nFN:%s %s\r\nN:%s;%s;;;Dr\r\nTITLE:%s\r\n"
                "ORG:Northlight Paper;Archive\r\n",
                version3 ? "3.0" : "2.1", given, family, family, given, pick(kTitle, numbers));
  *text += line;
  const char *const type = version3 ? "TYPE=" : "";
  std::snprintf(line, sizeof line,
                "TEL;%sWORK;%sVOICE:+1-555-%04u\r\nTEL;%sHOME:+1-555-%04u\r\n"
                "ADR;%sWORK:;;%u Quay Street;Porthaven;PH;%05u;Examplia\r\n"
                "EMAIL;%sINTERNET:%s.%s@example.org\r\nURL:http://example.org/%s\r\n",
                type, type, numbers.below(10000), type, numbers.below(10000), type,
                numbers.below(200), numbers.below(100000), type, given, family, family);
  *text += line;
  switch (kind) {
    case Kind::Plain:
      *text += "NOTE:";
      addNote(text, kWords, "\r\n ", numbers);
      break;
    case Kind::Utf8:
      *text += "NOTE;CHARSET=utf-8:";
      addNote(text, kUtf8Words, "\r\n ", numbers);
      break;
    case Kind::Picture:
      *text += "PHOTO;JPEG;ENCODING=BASE64:";
      addBase64(text, 30 * 1024, numbers);
      break;
    case Kind::QuotedPrintable:
      *text += "NOTE;ENCODING=QUOTED-PRINTABLE;CHARSET=utf-8:";
      addNote(text, kQpWords, "=\r\n", numbers);
      break;
  }
  *text += "REV:20260131T120000Z\r\nEND:VCARD\r\n";
}

}  // namespace

const char *nameOf(Kind kind) {
  switch (kind) {
    case Kind::Plain:
      return "plain-2.1";
    case Kind::Utf8:
      return "utf8-3.0";
    case Kind::Picture:
      return "pictures-30KB";
    case Kind::QuotedPrintable:
      return "quoted-printable";
  }
  return "";
}

std::string makeText(Kind kind, size_t bytes) {
  Numbers numbers;
  std::string text;
  while (text.size() < bytes) addCard(&text, kind, numbers);
  return text;
}

}  // namespace px::bench

#include "bench/corpora.h"

#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <string_view>

namespace px::bench {

namespace {

constexpr size_t kMegabyte = 1000 * 1000;

constexpr const char *kGiven[] = {"Ada", "Ben", "Clara", "David", "Elena", "Farid", "Grete"};
constexpr const char *kFamily[] = {"Ashdown", "Birkeland", "Castellan", "Dvorin", "Ekwall"};
constexpr const char *kTitles[] = {"Engineer", "Head of Sales", "Secretary", "Archivist"};
constexpr const char *kStreets[] = {"Quay Street", "Mill Lane", "Harbour Road", "Old Market"};
constexpr const char *kTowns[] = {"Porthaven", "Eastmoor", "Lindfield", "Saltwick"};
constexpr const char *kWords[] = {"meets",   "every",  "Tuesday", "at",  "the",
                                  "harbour", "office", "with",    "two", "colleagues",
                                  "and",     "a",      "thermos", "of",  "tea"};
constexpr const char *kUtf8Words[] = {"trifft", "größere",  "Gruppen", "im",    "Büro", "für",
                                      "Öl\\,",  "und",      "Käse",    "“zu”",  "fünf", "€",
                                      "jeden",  "Dienstag", "mit",     "Tee\\;"};
constexpr const char *kQpWords[] = {"gr=F6=DFere", "Gruppen", "im",         "B=FCro", "f=FCr",
                                    "und",         "K=E4se",  "zu=3Dzweit", "mit",    "Tee"};

}  // namespace

// Writes words, and counts the bytes.
class Writer {
 public:
  explicit Writer(std::ostream &file) : file_(file) {}

  size_t size() const { return size_; }
  uint32_t below(uint32_t limit) { return static_cast<uint32_t>(numbers_() % limit); }

  void add(std::string_view text) {
    file_ << text;
    size_ += text.size();
  }

  template <size_t Count>
  void addOneOf(const char *const (&words)[Count]) {
    add(words[below(Count)]);
  }

  void addNumber(uint32_t digits) {
    std::string number;
    for (uint32_t i = 0; i < digits; ++i) number += static_cast<char>('0' + below(10));
    add(number);
  }

  // `count` words, with `fold` where a line grows longer than 70 bytes.
  template <size_t Count>
  void addWords(int count, const char *const (&words)[Count], const char *fold) {
    size_t lineEnd = size_ + 70;
    for (int i = 0; i < count; ++i) {
      if (i > 0) add(" ");
      if (size_ > lineEnd) {
        add(fold);
        lineEnd = size_ + 70;
      }
      addOneOf(words);
    }
  }

  void addBase64(int lines) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int line = 0; line < lines; ++line) {
      std::string text = "\r\n ";
      for (int i = 0; i < 72; ++i) text += digits[below(64)];
      add(text);
    }
    add("\r\n\r\n");
  }

 private:
  std::ostream &file_;
  size_t size_ = 0;
  std::mt19937_64 numbers_{20260131};
};

namespace {

// The lines that cards of every kind have; `type` stands before the name of a type.
void addPerson(Writer &w, std::string_view version, const std::string &type) {
  const std::string given = kGiven[w.below(std::size(kGiven))];
  const std::string family = kFamily[w.below(std::size(kFamily))];
  w.add("BEGIN:VCARD\r\nVERSION:");
  w.add(version);
  w.add("\r\nFN:" + given + " " + family + "\r\nN:" + family + ";" + given + ";;;Dr\r\nTITLE:");
  w.addOneOf(kTitles);
  w.add("\r\nORG:Northlight Paper;Archive\r\nTEL;" + type + "WORK;" + type + "VOICE:+1-555-");
  w.addNumber(4);
  w.add("\r\nTEL;" + type + "HOME:+1-555-");
  w.addNumber(4);
  w.add("\r\nADR;" + type + "WORK:;;");
  w.addNumber(2);
  w.add(" ");
  w.addOneOf(kStreets);
  w.add(";");
  w.addOneOf(kTowns);
  w.add(";PH;");
  w.addNumber(5);
  w.add(";Examplia\r\nEMAIL;" + type + "INTERNET:" + given + "." + family +
        "@example.org\r\nURL:http://example.org/" + family + "\r\n");
}

void addEnd(Writer &w) {
  w.add("REV:20260131T120000Z\r\nUID:");
  w.addNumber(16);
  w.add("\r\nEND:VCARD\r\n");
}

void addPlainCard(Writer &w, size_t) {
  addPerson(w, "2.1", "");
  w.add("LABEL;WORK;ENCODING=QUOTED-PRINTABLE:Northlight Paper=0D=0A");
  w.addNumber(2);
  w.add(" ");
  w.addOneOf(kStreets);
  w.add("=0D=0A=\r\n");
  w.addOneOf(kTowns);
  w.add(" PH\r\nNOTE;ENCODING=QUOTED-PRINTABLE:");
  w.addWords(24, kQpWords, "=\r\n");
  w.add("\r\nNOTE:");
  w.addWords(20, kWords, "\r\n ");
  w.add("\r\n");
  addEnd(w);
}

void addUtf8Card(Writer &w, size_t) {
  addPerson(w, "3.0", "TYPE=");
  w.add("NOTE;CHARSET=utf-8:");
  w.addWords(50, kUtf8Words, "\r\n ");
  w.add("\r\n");
  addEnd(w);
}

void addPictureCard(Writer &w, size_t) {
  addPerson(w, "2.1", "");
  w.add("PHOTO;JPEG;ENCODING=BASE64:");
  w.addBase64(30 * 1024 / 72);
  addEnd(w);
}

void addEvent(Writer &w) {
  w.add("BEGIN:VEVENT\r\nUID:");
  w.addNumber(16);
  w.add("\r\nSUMMARY:");
  w.addWords(4, kWords, "\r\n ");
  w.add("\r\nLOCATION:");
  w.addOneOf(kStreets);
  w.add("\r\nDTSTART:20260131T");
  w.addNumber(6);
  w.add("Z\r\nDTEND:20260131T");
  w.addNumber(6);
  w.add("Z\r\nSTATUS:CONFIRMED\r\nCATEGORIES:MEETING;WORK\r\nCLASS:PUBLIC\r\nPRIORITY:");
  w.addNumber(1);
  w.add("\r\nRRULE:W1 TU #");
  w.addNumber(1);
  w.add("\r\nATTENDEE;ROLE=OWNER;STATUS=CONFIRMED;RSVP=YES:");
  w.addOneOf(kGiven);
  w.add("@example.org\r\nAALARM:20260131T114500Z;;;bell.wav\r\nDESCRIPTION:");
  w.addWords(25, kWords, "\r\n ");
  w.add("\r\nTRANSP:0\r\nSEQUENCE:");
  w.addNumber(1);
  w.add("\r\nEND:VEVENT\r\n");
}

void addCalendar(Writer &w, size_t) {
  w.add("BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\nGEO:48.1,11.5\r\n");
  for (int i = 0; i < 10; ++i) addEvent(w);
  w.add("END:VCALENDAR\r\n");
}

void addTinyCard(Writer &w, size_t) {
  w.add("BEGIN:VCARD\r\nFN:");
  w.addOneOf(kGiven);
  w.add("\r\nTEL:555");
  w.addNumber(5);
  w.add("\r\nEND:VCARD\r\n");
}

void addCardOfOneValue(Writer &w, size_t bytes) {
  w.add("BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ada Ashdown\r\nNOTE:");
  while (w.size() < bytes) {
    w.addWords(12, kWords, "");
    w.add("\r\n  ");
  }
  w.add("end\r\nEND:VCARD\r\n");
}

void addCardOfManyLines(Writer &w, size_t bytes) {
  w.add("BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ada Ashdown\r\n");
  while (w.size() < bytes) {
    w.add("TEL;TYPE=WORK:+1-555-");
    w.addNumber(8);
    w.add("\r\n");
  }
  w.add("END:VCARD\r\n");
}

constexpr Corpus kCorpora[] = {
    {"plain 2.1", Purpose::Kind, 20 * kMegabyte, addPlainCard},
    {"3.0 UTF-8", Purpose::Kind, 20 * kMegabyte, addUtf8Card},
    {"vCalendar 1.0", Purpose::Kind, 20 * kMegabyte, addCalendar, true},
    {"pictures of 30 KB", Purpose::Kind, 20 * kMegabyte, addPictureCard, false, true},
    {"plain 2.1, 200 MB", Purpose::Growth, 200 * kMegabyte, addPlainCard},
    {"one value of 100 MB", Purpose::Growth, 100 * kMegabyte, addCardOfOneValue},
    {"a million tiny cards", Purpose::Growth, 50 * kMegabyte, addTinyCard},
    {"a card of 100,000 lines", Purpose::Growth, 3100 * 1000, addCardOfManyLines},
};

}  // namespace

std::span<const Corpus> corpora() { return kCorpora; }

void Corpus::write(std::ostream &file) const {
  Writer writer(file);
  while (writer.size() < bytes) addCard(writer, bytes);
}

}  // namespace px::bench

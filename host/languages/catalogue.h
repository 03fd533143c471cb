// A catalogue of translations, in the binary form that msgfmt writes.
//
// The C library's own reader isn't used: it knows no language but by a locale that is generated on
// the system, so a choice of the language alone doesn't reach it.

#ifndef PX_HOST_LANGUAGES_CATALOGUE_H
#define PX_HOST_LANGUAGES_CATALOGUE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace px {

class Catalogue {
 public:
  Catalogue() = default;  // an empty one

  // Takes the bytes of a file. What isn't a catalogue, or a damaged one, gives an empty one.
  explicit Catalogue(std::string bytes);

  bool isEmpty() const { return count_ == 0; }

  // Answers the translation, with a NUL behind it, valid as long as the catalogue; an empty text
  // when there is none. A text that is told from an equal one by a context has the context and "\4"
  // before it.
  std::string_view find(std::string_view text) const;

 private:
  uint32_t number(size_t position) const;
  std::string_view entry(uint32_t table, uint32_t index) const;

  std::string bytes_;
  uint32_t count_ = 0;
  uint32_t texts_ = 0, translations_ = 0;  // positions of the tables
};

}  // namespace px

#endif

// The language that the program speaks.
//
// Texts stand in the code in English, which is what a person gets where there is no translation.
// po/ holds the translations. A program chooses its language once, before any thread is started;
// from then on every thread may ask. The library speaks the language of whoever calls it,
// meanwhile.

#ifndef PX_HOST_LANGUAGES_TRANSLATION_H
#define PX_HOST_LANGUAGES_TRANSLATION_H

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Marks a text for the catalogues that is translated somewhere else, such as a row of a table.
#define N_(text) text

namespace px {

// A language and its texts. What was found once stays for ever.
struct Language;

// Answers the language of a code: "de", or "de_AT" or "de-AT" for which "de" will do; null when
// there is no catalogue for it.
const Language *findLanguage(std::string_view code);

// Chooses a language by its code. Answers false, with nothing changed, when there is none.
bool useLanguage(std::string_view code);

// Chooses the language of the user's locale, by the environment. English, where there is no
// catalogue for any that the user would read.
void useLanguageOfEnvironment();

// The codes of all languages that can be chosen, sorted.
std::vector<std::string> knownLanguages();

// The code of the language chosen.
const std::string &language();

// As long as one lives, the thread that made it speaks another language than the one chosen.
class LanguageOfThread {
 public:
  explicit LanguageOfThread(const Language *language);
  ~LanguageOfThread();
  LanguageOfThread(const LanguageOfThread &) = delete;
  LanguageOfThread &operator=(const LanguageOfThread &) = delete;

 private:
  const Language *before_;
};

// Answers the text in the language chosen. A translation is valid for ever and has a NUL behind it;
// where there is none the answer is `text`.
std::string_view tr(std::string_view text);

// Likewise for a text that means different things in different contexts.
std::string_view trIn(std::string_view context, std::string_view text);

// Puts the values in place of %1, %2 ...
std::string filled(std::string_view text, std::initializer_list<std::string_view> values);

}  // namespace px

#endif

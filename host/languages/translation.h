// The language that the program speaks.
//
// Texts stand in the code in English, which is what a person gets where there is no translation.
// po/ holds the translations. The language is chosen once, before any thread is started; from then
// on every thread may ask.

#ifndef PX_HOST_LANGUAGES_TRANSLATION_H
#define PX_HOST_LANGUAGES_TRANSLATION_H

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Marks a text for the catalogues that is translated somewhere else, such as a row of a table.
#define N_(text) text

namespace px {

// Chooses a language by its code: "de", or "de_AT" for which "de" will do. Answers false, with
// nothing changed, when there is no catalogue for it.
bool useLanguage(std::string_view code);

// Chooses the language of the user's locale, by the environment. English, where there is no
// catalogue for any that the user would read.
void useLanguageOfEnvironment();

// The codes of all languages that can be chosen, sorted.
std::vector<std::string> knownLanguages();

// The code of the language chosen.
const std::string &language();

// Answers the text in the language chosen. Valid as long as `text` and until the language changes.
std::string_view tr(std::string_view text);

// Likewise for a text that means different things in different contexts.
std::string_view trIn(std::string_view context, std::string_view text);

// Puts the values in place of %1, %2 ...
std::string filled(std::string_view text, std::initializer_list<std::string_view> values);

}  // namespace px

#endif

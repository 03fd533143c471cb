// Names of saved files by a pattern: '{file}-{card}-{kind}' gives "friends-3-photo".

#ifndef PX_HOST_SAVING_NAME_PATTERN_H
#define PX_HOST_SAVING_NAME_PATTERN_H

#include <string>
#include <string_view>

namespace px {

struct NameParts {
  std::string file;    // of the cards, without folder and extension
  std::string card;    // its number in the file
  std::string kind;    // "photo"
  std::string number;  // of the object in the file
  std::string title;   // from the card, without its extension
};

// Answers what is wrong with a pattern, in the language chosen; an empty text for a good one.
std::string namePatternFault(std::string_view pattern);

// Puts the parts in place of their names in braces. The parts come from strangers; slashes and the
// like are taken out of them, so none reaches beyond its place.
std::string nameByPattern(std::string_view pattern, const NameParts &parts);

}  // namespace px

#endif

// What the parameters of a content line say.

#ifndef PX_HOST_SOURCE_LINE_PARAMETERS_H
#define PX_HOST_SOURCE_LINE_PARAMETERS_H

#include <string>
#include <vector>

#include "host/source/content_lines.h"
#include "host/source/line_notes.h"
#include "host/source/value_bytes.h"

namespace px {

// The rules of a card's version that reading it needs.
struct VersionRules {
  bool escapes = false;       // \n \, \; \\ in values; otherwise \; in structured ones alone
  bool caretEscapes = false;  // ^n ^' ^^ in parameters
  FoldRule fold = FoldRule::KeepsBlank;
};

// `version` is the text of a VERSION line. A calendar without one counts as 2.0. So does a card as
// far as backslashes and commas go, since whoever writes \n means it; its folds are those of 2.1.
VersionRules rulesOf(std::string_view version, bool calendar);

// How the value is encoded, whatever the version calls that.
Transfer transferOf(const std::vector<HeadParameter> &parameters);

// The same for a whole line.
Transfer transferOf(const ContentLine &line);

// Whether a parameter without a name says something of its own: an encoding, a kind of value or a
// type that the filter knows.
bool isParameterWord(std::string_view word);

// All parameters by name, those without one under what they are: an encoding, a kind of value or a
// type. Texts are bytes as they stand in the file.
std::vector<Parameter> parametersOf(const std::vector<HeadParameter> &parameters,
                                    const VersionRules &rules);

// The first value of the parameter with this name, in capitals; null when there is none.
const std::string *valueOf(const std::vector<Parameter> &parameters, std::string_view name);

}  // namespace px

#endif

#include "host/saving/name_pattern.h"

#include <algorithm>

#include "host/languages/translation.h"
#include "host/saving/save_directory.h"

namespace px {
namespace {

struct Part {
  std::string_view name;
  std::string NameParts::*text;
};

constexpr Part kParts[] = {
    {"{file}", &NameParts::file},     {"{card}", &NameParts::card},   {"{kind}", &NameParts::kind},
    {"{number}", &NameParts::number}, {"{title}", &NameParts::title},
};

const Part *partAt(std::string_view pattern) {
  for (const Part &part : kParts) {
    if (pattern.starts_with(part.name)) return &part;
  }
  return nullptr;
}

}  // namespace

std::string namePatternFault(std::string_view pattern) {
  if (pattern.empty()) return std::string(tr("the pattern is empty"));
  if (pattern.find_first_of("/\\") != pattern.npos) {
    return std::string(tr("a name can't hold a slash; --extract gives the folder"));
  }
  for (size_t at = 0; (at = pattern.find('{', at)) != pattern.npos; ++at) {
    if (partAt(pattern.substr(at))) continue;
    const size_t end = std::min(pattern.find('}', at), pattern.size() - 1);
    const std::string_view name = pattern.substr(at, end - at + 1);
    return filled(tr("there is no %1, but {file}, {card}, {kind}, {number} and {title}"), {name});
  }
  return {};
}

std::string nameByPattern(std::string_view pattern, const NameParts &parts) {
  std::string name;
  while (!pattern.empty()) {
    const Part *part = partAt(pattern);
    name += part ? safeFileName(parts.*(part->text), "") : std::string(1, pattern[0]);
    pattern.remove_prefix(part ? part->name.size() : 1);
  }
  return name;
}

}  // namespace px

#include "host/writers/kept_heads.h"

#include <string>

namespace px {

size_t numberOfHead(const Property &property) {
  const std::string &name = property.name;
  size_t number = property.label + name.size() * 31;
  if (!name.empty()) number += static_cast<unsigned char>(name.back()) * size_t{7};
  for (const std::string &type : property.types) {
    number = number * 31 + type.size() + static_cast<unsigned char>(type[0]);
  }
  return number;
}

bool isSameHead(const Property &a, const Property &b) {
  return a.label == b.label && a.name == b.name && a.group == b.group &&
         a.groupLabel == b.groupLabel && a.labelsGroup == b.labelsGroup && a.types == b.types &&
         a.parameters == b.parameters;
}

bool isLongHead(const Property &property) {
  constexpr size_t most = 1024;
  constexpr size_t empty = sizeof(std::string);  // what one takes that says nothing
  size_t size = property.name.size() + property.group.size() + property.groupLabel.size();
  for (const std::string &type : property.types) size += empty + type.size();
  for (const Parameter &parameter : property.parameters) {
    size += empty + parameter.name.size();
    for (const std::string &value : parameter.values) size += empty + value.size();
  }
  return size > most;
}

}  // namespace px

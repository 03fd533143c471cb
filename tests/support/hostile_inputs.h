// Files that are small and cost much, by name. Each takes a size and grows with it.

#ifndef PX_TESTS_SUPPORT_HOSTILE_INPUTS_H
#define PX_TESTS_SUPPORT_HOSTILE_INPUTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace px::test {

struct HostileInput {
  const char *name;
  std::string text;
};

// `size` is the size of each, in bytes, more or less.
std::vector<HostileInput> hostileInputs(size_t size);

}  // namespace px::test

#endif

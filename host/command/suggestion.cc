#include "host/command/suggestion.h"

#include <algorithm>
#include <sstream>

#include "host/command/option_table.h"

namespace px {
namespace {

size_t distance(std::string_view a, std::string_view b) {
  // A row for each letter of a: what it costs to make so many letters of b of those up to it.
  std::vector<size_t> beforeLast, last, row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    beforeLast = std::move(last);
    last = row;
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const bool same = a[i - 1] == b[j - 1];
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row.back();
}

}  // namespace

std::optional<size_t> nearest(std::string_view word, const std::vector<std::string> &known) {
  constexpr size_t longest = 64;
  std::optional<size_t> best;
  size_t bound = word.size() > longest ? 0 : (word.size() + 1) / 3 + 1;
  for (size_t i = 0; i < known.size() && bound > 0; ++i) {
    const size_t far = distance(word, known[i]);
    if (far >= bound) continue;
    bound = far;
    best = i;
  }
  return best;
}

std::string suggestedOption(std::string_view name) {
  std::string begun;  // what is too short for one
  for (const OptionRow &row : optionTable()) {
    if (!std::string_view(row.name).starts_with(name)) continue;
    begun.append(begun.empty() ? "--" : ", --").append(row.name);
  }
  if (!begun.empty()) return begun;
  std::vector<std::string> known, meant;
  for (const OptionRow &row : optionTable()) {
    known.emplace_back(row.name);
    meant.push_back(std::string("--") + row.name);
  }
  for (const OptionRow &row : optionTable()) {
    std::istringstream words(row.words);
    for (std::string word; words >> word;) {
      known.push_back(word);
      meant.push_back(std::string("--") + row.name + " " + word);
    }
  }
  const std::optional<size_t> found = nearest(name, known);
  return found ? meant[*found] : "";
}

}  // namespace px

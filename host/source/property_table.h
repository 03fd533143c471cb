// What the filter makes of a property, by its name: the label it writes, the form of the value, and
// the place that it has in the summary.

#ifndef PX_HOST_SOURCE_PROPERTY_TABLE_H
#define PX_HOST_SOURCE_PROPERTY_TABLE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace px {

enum class PropertyForm {
  Text,    // one text
  Single,  // one text, cut at its first semicolon and never decoded
  Rows,    // fields divided by semicolons, each with a label
  Lines,   // likewise, without labels; empty ones don't show
  Media,   // a text, or Base64
  Key,     // likewise
  Attach,  // likewise, with another marking of Base64
};

enum class SummaryRole : uint8_t {
  None,
  Name,
  FormattedName,
  Title,
  Organisation,
  Address,
  Label,
  Telephone,
  Email,
  Url,
  Summary,  // from here on: in calendars
  Location,
  Start,
  Status,
};
constexpr size_t SummaryRoleCount = static_cast<size_t>(SummaryRole::Status) + 1;

struct KnownProperty {
  std::string_view name;  // in capitals
  uint32_t label;
  PropertyForm form = PropertyForm::Text;
  SummaryRole role = SummaryRole::None;
  std::span<const uint32_t> fields = {};  // labels of the rows
};

// The row of a name, in any case of letters, as a filter opened with `format` knows it; null when
// it doesn't, and writes the property under its name.
const KnownProperty *knownProperty(std::string_view name, int16_t format);

// The first row that is written under this label; null when there is none.
const KnownProperty *propertyOfLabel(uint32_t label, int16_t format);

// The label of "dom", the first of the types that the filter writes; those of the others follow it.
constexpr uint32_t FirstTypeLabel = 79424;

// The number of a type that the filter knows, by its name in any case of letters, in the order in
// which it writes them; -1 for any other.
int knownType(std::string_view name);

// The small name of the type that has this label; empty when none has.
std::string_view typeOfLabel(uint32_t label);

}  // namespace px

#endif

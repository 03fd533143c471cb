// The value of each Base64 character.

#ifndef PX_VCRD_PARSER_BASE64_VALUES_H
#define PX_VCRD_PARSER_BASE64_VALUES_H

#include <array>
#include <cstddef>
#include <cstdint>

// 255 for a byte that is none; "=" is none.
constexpr uint8_t Base64Value(uint8_t c) {
  if (c >= 'A' && c <= 'Z') return static_cast<uint8_t>(c - 'A');
  if (c >= 'a' && c <= 'z') return static_cast<uint8_t>(c - 'a' + 26);
  if (c >= '0' && c <= '9') return static_cast<uint8_t>(c - '0' + 52);
  if (c == '+') return 62;
  if (c == '/') return 63;
  return 255;
}

consteval std::array<uint8_t, 128> MakeBase64Values() {
  std::array<uint8_t, 128> values{};
  for (size_t c = 0; c < values.size(); ++c) values[c] = Base64Value(static_cast<uint8_t>(c));
  return values;
}

inline constexpr std::array<uint8_t, 128> kBase64Values = MakeBase64Values();

#endif

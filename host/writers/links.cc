#include "host/writers/links.h"

#include <algorithm>
#include <cstdint>

#include "host/source/ascii_case.h"
#include "host/source/utf8.h"

namespace px {
namespace {

constexpr std::string_view kSchemes[] = {"http", "https", "mailto", "tel", "sms", "geo"};

// White space at the ends isn't part of an address.
std::string_view trimmed(std::string_view text) {
  const size_t first = std::min(text.find_first_not_of(" \t\n"), text.size());
  text.remove_prefix(first);
  return text.substr(0, text.find_last_not_of(" \t\n") + 1);
}

bool isPlain(std::string_view address) {
  if (address.find_first_of(" <>\"") != address.npos) return false;
  std::string printable;
  appendPrintable(address, &printable);
  return printable == address;
}

// Appends the text with %XX for each byte that an address can't have, or that `special` names.
void appendEncoded(std::string_view text, std::string_view special, std::string *to) {
  constexpr std::string_view kept = "-._~:/?#[]@!$&'()*+,;=%";
  constexpr char digits[] = "0123456789ABCDEF";
  for (const char c : text) {
    const bool isLetter = ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z');
    const bool isKept = kept.find(c) != kept.npos && special.find(c) == special.npos;
    if (isLetter || ('0' <= c && c <= '9') || isKept) {
      *to += c;
    } else {
      *to += '%';
      *to += digits[static_cast<uint8_t>(c) >> 4];
      *to += digits[c & 0xF];
    }
  }
}

bool isDigit(char c) { return '0' <= c && c <= '9'; }

}  // namespace

std::string addressOf(std::string_view value) {
  value = trimmed(value);
  const size_t colon = value.find(':');
  if (colon == value.npos || colon + 1 == value.size() || !isPlain(value)) return {};
  const std::string scheme = inSmallLetters(value.substr(0, colon));
  const bool known =
      std::find(std::begin(kSchemes), std::end(kSchemes), scheme) != std::end(kSchemes);
  std::string address;
  if (known) appendEncoded(value, "", &address);
  return address;
}

std::string telephoneAddressOf(std::string_view value) {
  std::string address = addressOf(value);
  if (!address.empty()) return address;
  value = trimmed(value);
  // Codes with * and # drive a telephone instead of calling somebody.
  std::string number;
  for (const char c : value) {
    if (isDigit(c) || (c == '+' && number.empty())) {
      number += c;
    } else if (std::string_view(" \t()/.-").find(c) == std::string_view::npos) {
      return {};
    }
  }
  constexpr size_t shortest = 3;
  return number.size() < shortest ? std::string() : "tel:" + number;
}

std::string mailAddressOf(std::string_view value) {
  std::string address = addressOf(value);
  if (!address.empty()) return address;
  value = trimmed(value);
  if (value.ends_with('>')) {
    const size_t open = value.rfind('<');
    if (open == value.npos) return {};
    value = value.substr(open + 1, value.size() - open - 2);
  }
  const size_t at = value.find('@');
  const bool isAddress = at != value.npos && at > 0 && at + 1 < value.size() &&
                         value.find('@', at + 1) == value.npos && isPlain(value);
  if (!isAddress) return {};
  address = "mailto:";
  // Signs with a meaning there, so that no text turns into a subject or a copy.
  appendEncoded(value, "%?&#;,:/", &address);
  return address;
}

}  // namespace px

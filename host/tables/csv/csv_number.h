// The numbers and keys that the fields of a CSV file are. Blanks around are allowed.
#pragma once

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/null_number.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

inline std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
    text.remove_suffix(1);
  }
  return text;
}

// A sign that the parsers of the standard library do not know.
inline std::string_view withoutPlus(std::string_view text) {
  const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
  return hasPlus ? text.substr(1) : text;
}

// Beyond the range of a double: infinity or (nearly) zero, as rounding gives it.
inline double roundedOutOfRange(std::string_view text) {
  static const locale_t plainLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(std::string(text).c_str(), nullptr, plainLocale);
}

// Of the words, "nan", "inf" and "-inf" in any case are numbers.
inline bool parseNumber(std::string_view field, double& number) {
  std::string_view text = field;
  auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) [[unlikely]] {
    text = withoutPlus(withoutBlanks(field));
    result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ptr != text.data() + text.size() ||
        result.ec == std::errc::invalid_argument) {
      return false;
    }
    if (result.ec == std::errc::result_out_of_range) {
      number = roundedOutOfRange(text);
      return true;
    }
  }
  if (!isFiniteNumber(number)) [[unlikely]] {
    if (std::isnan(number)) {
      number = kNotANumber;
      return text.size() == 3;
    }
    return text.size() == (text.front() == '-' ? 4u : 3u);
  }
  return true;
}

inline bool parseKey(std::string_view field, std::uint32_t& key) {
  const std::string_view text = withoutPlus(withoutBlanks(field));
  const auto result = std::from_chars(text.data(), text.data() + text.size(), key);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && !isNullKey(key);
}

}  // namespace kelvarin

// Numbers from texts and back, in UTF-8 and without memory of their own.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/shortest_number.h"

namespace kelvarin {

// The number that the whole text is, blanks around it allowed; nothing for a blank or any other
// text.
std::optional<double> numberOfWholeText(std::string_view text);

bool isBlankText(std::string_view text);

// The shortest text that reads back to the same number; lives until the next call.
class ShortestNumber {
 public:
  // Empty for the missing value.
  std::string_view print(double number);
  std::string_view print(std::uint32_t key);

 private:
  std::array<char, kLongestNumberText> m_digits;
};

}  // namespace kelvarin

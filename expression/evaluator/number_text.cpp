#include "expression/evaluator/number_text.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "base/null_number.h"
#include "base/shortest_number.h"
#include "expression/functions/number_scanner.h"

namespace kelvarin {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";

std::string_view withoutBlanksAround(std::string_view text) {
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) {
    return {};
  }
  return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

}  // namespace

std::optional<double> numberOfWholeText(std::string_view text) {
  if (const std::optional<double> plain = plainDecimal(text)) {
    return plain;
  }
  std::string_view digits = withoutBlanksAround(text);
  if (digits.starts_with('+') && !digits.starts_with("+-")) {
    digits.remove_prefix(1);
  }
  double number = 0.0;
  const auto [end, status] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (status != std::errc() || end != digits.data() + digits.size()) {
    return std::nullopt;
  }
  return std::isnan(number) ? kNotANumber : number;
}

bool isBlankText(std::string_view text) {
  return withoutBlanksAround(text).empty();
}

std::string_view ShortestNumber::print(double number) {
  if (isNullNumber(number)) {
    return {};
  }
  const char* end = appendShortest(m_digits.data(), number);
  return {m_digits.data(), static_cast<std::size_t>(end - m_digits.data())};
}

std::string_view ShortestNumber::print(std::uint32_t key) {
  const auto end = std::to_chars(m_digits.data(), m_digits.data() + m_digits.size(), key).ptr;
  return {m_digits.data(), static_cast<std::size_t>(end - m_digits.data())};
}

}  // namespace kelvarin

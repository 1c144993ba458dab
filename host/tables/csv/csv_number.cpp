#include "host/tables/csv/csv_number.h"

#include <algorithm>
#include <iterator>

namespace kelvarin {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The whole part and decimals of a number are those of `number`, all digits of which are printed.
bool areDigitsOf(std::string_view whole, std::string_view decimals, double number) {
  char digits[std::numeric_limits<double>::max_exponent10 + 2];
  const auto printed =
      std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, 0);
  return printed.ec == std::errc() &&
         whole == std::string_view(digits, static_cast<std::size_t>(printed.ptr - digits)) &&
         std::all_of(decimals.begin(), decimals.end(), [](char c) { return c == '0'; });
}

// How many bytes the thousands separator at the start of `text` has; 0 where there is none.
std::size_t sizeOfThousands(std::string_view text, char thousands) {
  if (thousands == '\0') {
    return 0;
  }
  if (text.front() == thousands) {
    return 1;
  }
  static constexpr std::string_view kNoBreakSpaces[] = {"\u00A0", "\u202F"};
  for (const std::string_view space : kNoBreakSpaces) {
    if (thousands == ' ' && text.starts_with(space)) {
      return space.size();
    }
  }
  return 0;
}

}  // namespace

bool toPlainNumber(std::string_view field, const CsvNumberFormat& format, std::string& plain) {
  constexpr int kGroup = 3;
  plain.clear();
  std::string_view rest = withoutBlanks(field);
  bool isWholePart = true;
  bool hasGroups = false;
  int digits = 0;  // of the group, or of the whole part
  while (!rest.empty()) {
    const char c = rest.front();
    if (isDigit(c)) {
      digits += isWholePart ? 1 : 0;
    } else if (const std::size_t size = sizeOfThousands(rest, format.thousands); size > 0) {
      const bool isGroup = hasGroups ? digits == kGroup : digits > 0 && digits <= kGroup;
      if (!isWholePart || !isGroup) {
        return false;
      }
      hasGroups = true;
      digits = 0;
      rest.remove_prefix(size);
      continue;
    } else if (c == format.decimal || c == 'e' || c == 'E') {
      if ((c == format.decimal && !isWholePart) || (isWholePart && hasGroups && digits != kGroup)) {
        return false;
      }
      isWholePart = false;
    } else if (c == '.') {
      return false;
    }
    plain += c == format.decimal ? '.' : c;
    rest.remove_prefix(1);
  }
  return !isWholePart || !hasGroups || digits == kGroup;
}

bool isNumberForPeople(std::string_view field) {
  std::string_view text = withoutBlanks(field);
  const bool isPercent = text.ends_with('%');
  text = withoutBlanks(text.substr(0, text.size() - (isPercent ? 1 : 0)));
  text.remove_prefix(text.starts_with('-') || text.starts_with('+') ? 1 : 0);
  const bool isOfDigits = !text.empty() && isDigit(text.front()) && isDigit(text.back()) &&
                          std::all_of(text.begin(), text.end(),
                                      [](char c) { return isDigit(c) || c == ',' || c == '.'; });
  if (!isOfDigits) {
    return false;
  }
  const std::size_t first = text.find(',');
  const std::size_t last = text.rfind(',');
  for (std::size_t comma = first; comma != text.npos; comma = text.find(',', comma + 1)) {
    const auto decimals = text.begin() + static_cast<std::ptrdiff_t>(comma) + 1;
    const bool isThousands = std::find_if_not(decimals, text.end(), isDigit) - decimals == 3;
    if (first != last && !isThousands) {
      return false;
    }
  }
  if (first == text.npos) {
    return isPercent;
  }
  // Points between thousands and the decimal one stand on one side; else it is a pair of numbers.
  return text.find('.') > first || text.rfind('.') < last;
}

bool isMissingWord(std::string_view field) {
  static constexpr std::string_view kWords[] = {"NA",   "N/A",  "n/a",  "#N/A", "NULL", "Null",
                                                "null", "None", "none", "-",    "?",    "."};
  return std::find(std::begin(kWords), std::end(kWords), withoutBlanks(field)) != std::end(kWords);
}

LostDigits lostDigits(std::string_view field, double number) {
  constexpr double kFirstWithoutDecimals = 0x1p53;
  constexpr std::size_t kDigitsThatAreKept = 15;
  std::string_view text = withoutPlus(withoutBlanks(field));
  if (text.starts_with('-')) {
    text.remove_prefix(1);
  }
  const auto wholeEnd = std::find_if_not(text.begin(), text.end(), isDigit);
  const auto wholeSize = static_cast<std::size_t>(wholeEnd - text.begin());
  if (wholeSize > 1 && text[0] == '0') {
    return LostDigits::leadingZero;
  }
  const double magnitude = std::fabs(number);
  if (wholeSize <= kDigitsThatAreKept || magnitude < kFirstWithoutDecimals) {
    return LostDigits::none;
  }
  const std::string_view whole = text.substr(0, wholeSize);
  const std::string_view decimals = text.substr(std::min(wholeSize + 1, text.size()));
  const bool hasExponent = text.find_first_of("eE", wholeSize) != text.npos;
  const bool isHeld =
      hasExponent || (std::isfinite(magnitude) && areDigitsOf(whole, decimals, magnitude));
  return isHeld ? LostDigits::none : LostDigits::wholePart;
}

}  // namespace kelvarin

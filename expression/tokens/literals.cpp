#include "expression/tokens/literals.h"

#include <algorithm>
#include <type_traits>

namespace kelvarin {

namespace {

template <typename Character>
using View = std::basic_string_view<Character>;

// As a 16-bit unit, where the bytes of Latin-1 are the first 256.
template <typename Character>
char16_t unitOf(Character c) {
  return static_cast<char16_t>(static_cast<std::make_unsigned_t<Character>>(c));
}
template <>
char16_t unitOf(char16_t c) {
  return c;
}

template <typename Character>
bool isCharacterAt(View<Character> text, std::size_t index, char16_t c) {
  return index < text.size() && unitOf(text[index]) == c;
}

template <typename Character>
bool isDigitAt(View<Character> text, std::size_t index) {
  return index < text.size() && isDigitCharacter(unitOf(text[index]));
}

template <typename Character>
std::size_t endOfDigits(View<Character> text, std::size_t index) {
  while (isDigitAt(text, index)) {
    ++index;
  }
  return index;
}

template <typename Character>
bool isHexadecimalDigitAt(View<Character> text, std::size_t index) {
  if (index >= text.size()) {
    return false;
  }
  const char16_t c = unitOf(text[index]);
  return isDigitCharacter(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

// 0 where no digit follows the prefix.
template <typename Character>
std::size_t sizeOfHexadecimal(View<Character> text) {
  constexpr std::size_t prefix = 2;
  if (!isCharacterAt(text, 0, u'0') || !isCharacterAt(text, 1, u'x')) {
    return 0;
  }
  std::size_t end = prefix;
  while (isHexadecimalDigitAt(text, end)) {
    ++end;
  }
  return end == prefix ? 0 : end;
}

// Behind the exponent that begins at the index, or the index where none does.
template <typename Character>
std::size_t endOfExponent(View<Character> text, std::size_t index) {
  if (!isCharacterAt(text, index, u'e') && !isCharacterAt(text, index, u'E')) {
    return index;
  }
  const bool isSigned =
      isCharacterAt(text, index + 1, u'+') || isCharacterAt(text, index + 1, u'-');
  const std::size_t digits = index + (isSigned ? 2 : 1);
  return isDigitAt(text, digits) ? endOfDigits(text, digits) : index;
}

// The character that a backslash in front of `c` makes.
std::optional<char16_t> escaped(char16_t c) {
  switch (c) {
    case u'n':
      return u'\n';
    case u'r':
      return u'\r';
    case u't':
      return u'\t';
    case u'"':
    case u'\\':
      return c;
    default:
      return std::nullopt;
  }
}

template <typename Character>
struct Literal {
  std::basic_string<Character> text;
  std::size_t size = 0;  // with the quotes
  TokenFault fault = TokenFault::unclosed;
};

template <typename Character>
Literal<Character> readTextLiteral(View<Character> text) {
  Literal<Character> literal;
  bool hasUnknownEscape = false;
  std::size_t i = 1;
  while (i < text.size()) {
    char16_t c = unitOf(text[i++]);
    if (c == u'"') {
      literal.fault = hasUnknownEscape ? TokenFault::unknownEscape : TokenFault::none;
      break;
    }
    if (c == u'\\' && i < text.size()) {
      const std::optional<char16_t> meant = escaped(unitOf(text[i++]));
      hasUnknownEscape |= !meant.has_value();
      c = meant.value_or(u'\\');
    }
    literal.text.push_back(static_cast<Character>(c));
  }
  literal.size = i;
  return literal;
}

}  // namespace

template <typename Character>
bool isName(View<Character> text) {
  return !text.empty() && sizeOfName(text) == text.size();
}

template <typename Character>
std::size_t sizeOfName(View<Character> text) {
  if (text.empty() || isDigitAt(text, 0)) {
    return 0;
  }
  const auto end = std::find_if_not(text.begin(), text.end(),
                                    [](Character c) { return isNameCharacter(unitOf(c)); });
  return static_cast<std::size_t>(end - text.begin());
}

template <typename Character>
std::size_t sizeOfNumber(View<Character> text) {
  if (const std::size_t size = sizeOfHexadecimal(text); size > 0) {
    return size;
  }
  std::size_t end = endOfDigits(text, 0);
  std::size_t digitCount = end;
  if (isCharacterAt(text, end, u'.')) {
    const std::size_t fraction = end + 1;
    end = endOfDigits(text, fraction);
    digitCount += end - fraction;
  }
  return digitCount == 0 ? 0 : endOfExponent(text, end);
}

template <typename Character>
std::size_t sizeOfTextLiteral(View<Character> text) {
  return isCharacterAt(text, 0, u'"') ? readTextLiteral(text).size : 0;
}

template <typename Character>
TokenFault faultOfTextLiteral(View<Character> literal) {
  return readTextLiteral(literal).fault;
}

template <typename Character>
std::optional<std::basic_string<Character>> textOfLiteral(View<Character> literal) {
  Literal<Character> read = readTextLiteral(literal);
  if (read.fault != TokenFault::none) {
    return std::nullopt;
  }
  return std::move(read.text);
}

template bool isName(View<char>);
template bool isName(View<char16_t>);
template std::size_t sizeOfName(View<char>);
template std::size_t sizeOfName(View<char16_t>);
template std::size_t sizeOfNumber(View<char>);
template std::size_t sizeOfNumber(View<char16_t>);
template std::size_t sizeOfTextLiteral(View<char>);
template std::size_t sizeOfTextLiteral(View<char16_t>);
template TokenFault faultOfTextLiteral(View<char>);
template TokenFault faultOfTextLiteral(View<char16_t>);
template std::optional<std::string> textOfLiteral(View<char>);
template std::optional<std::u16string> textOfLiteral(View<char16_t>);

}  // namespace kelvarin

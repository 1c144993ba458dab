// Parts of texts: lengths, pieces by position or between separators, trimming and replacing.

#include <algorithm>
#include <cmath>
#include <optional>

#include "expression/functions/text_bodies.h"
#include "expression/functions/text_positions.h"
#include "expression/functions/themes.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

double lengthOf(std::string_view text) {
  const std::optional<std::size_t> count = unitCount(text);
  return static_cast<double>(count ? *count : static_cast<std::size_t>(qstringOf(text).size()));
}

// Of the last character, which may be a pair of units.
double codepointOfLast(std::string_view utf8) {
  if (utf8.empty()) {
    return kNullNumber;
  }
  if (isAscii(utf8)) {
    return utf8.back();
  }
  const QString text = qstringOf(utf8);
  if (text.isEmpty()) {
    return kNullNumber;
  }
  const QChar last = text.back();
  const bool isPair =
      last.isLowSurrogate() && text.size() > 1 && text[text.size() - 2].isHighSurrogate();
  return isPair ? QChar::surrogateToUcs4(text[text.size() - 2], last) : last.unicode();
}

double unitAt(std::string_view text, double position) {
  const double index = std::trunc(position);
  if (!(index >= 0 && index < static_cast<double>(text.size()))) {
    return -1.0;
  }
  const auto unit = static_cast<std::size_t>(index);
  if (isAscii(text.substr(0, unit + 1))) {
    return text[unit];
  }
  const QString units = qstringOf(text);
  return unit < static_cast<std::size_t>(units.size())
             ? static_cast<double>(units[static_cast<qsizetype>(unit)].unicode())
             : -1.0;
}

ColumnText part(TextArena& arena, std::string_view text, std::size_t from, std::size_t length) {
  if (const auto found = partOfUnits(text, from, length)) {
    return ColumnText(*found);
  }
  const QString units = qstringOf(text);
  const auto begin = std::min(static_cast<qsizetype>(from), units.size());
  const auto size = std::min(static_cast<qsizetype>(length), units.size() - begin);
  return textIn(arena, units.sliced(begin, size));
}

// No text has more units than bytes.
std::size_t limitedTo(std::string_view text, double position) {
  return static_cast<std::size_t>(limitedPosition(position, static_cast<qsizetype>(text.size())));
}

ColumnText partOfLength(TextArena& arena, std::string_view text, double start, double length) {
  return part(arena, text, limitedTo(text, start), limitedTo(text, length));
}

// Null, not just empty, when the end is not behind the start.
ColumnText partBetween(TextArena& arena, std::string_view text, double start, double end) {
  if (std::trunc(end) <= std::trunc(start)) {
    return {};
  }
  const std::size_t from = limitedTo(text, start);
  const std::size_t to = limitedTo(text, end);
  return part(arena, text, from, to - std::min(from, to));
}

ColumnText firstUnits(TextArena& arena, std::string_view text, double length) {
  return part(arena, text, 0, limitedTo(text, length));
}

ColumnText lastUnits(TextArena& arena, std::string_view text, double length) {
  if (const std::optional<std::size_t> count = unitCount(text)) {
    const std::size_t wanted = std::min(limitedTo(text, length), *count);
    return part(arena, text, *count - wanted, wanted);
  }
  const QString units = qstringOf(text);
  return textIn(arena, units.last(limitedPosition(length, units.size())));
}

// Of a character in UTF-8, as QChar has it. Characters of four bytes are none.
bool isSpace(std::string_view character) {
  const auto bits = [character](std::size_t index) {
    return static_cast<unsigned>(static_cast<unsigned char>(character[index]));
  };
  switch (character.size()) {
    case 1:
      return character[0] == ' ' || (character[0] >= '\t' && character[0] <= '\r');
    case 2:
      return QChar::isSpace((bits(0) & 0x1F) << 6 | (bits(1) & 0x3F));
    case 3:
      return QChar::isSpace((bits(0) & 0x0F) << 12 | (bits(1) & 0x3F) << 6 | (bits(2) & 0x3F));
    default:
      return false;
  }
}

// These take texts that are UTF-8.
std::string_view withoutSpacesBefore(std::string_view text) {
  while (!text.empty()) {
    const std::size_t size = sizeOfCharacterAt(text, 0);
    if (!isSpace(text.substr(0, size))) {
      break;
    }
    text.remove_prefix(size);
  }
  return text;
}

std::string_view withoutSpacesBehind(std::string_view text) {
  while (!text.empty()) {
    std::size_t begin = text.size() - 1;
    while (begin > 0 && (static_cast<unsigned char>(text[begin]) & 0xC0) == 0x80) {
      --begin;
    }
    if (!isSpace(text.substr(begin))) {
      break;
    }
    text.remove_suffix(text.size() - begin);
  }
  return text;
}

qsizetype endOfTrimmed(const QString& text) {
  qsizetype end = text.size();
  while (end > 0 && text[end - 1].isSpace()) {
    --end;
  }
  return end;
}

qsizetype startOfTrimmed(const QString& text) {
  qsizetype start = 0;
  while (start < text.size() && text[start].isSpace()) {
    ++start;
  }
  return start;
}

// Bytes that are no UTF-8 are QString's business.
ColumnText trimmed(TextArena& arena, std::string_view text) {
  return unitCount(text) ? ColumnText(withoutSpacesBehind(withoutSpacesBefore(text)))
                         : textIn(arena, qstringOf(text).trimmed());
}
ColumnText trimmedLeft(TextArena& arena, std::string_view text) {
  if (unitCount(text)) {
    return ColumnText(withoutSpacesBefore(text));
  }
  const QString units = qstringOf(text);
  return textIn(arena, units.sliced(startOfTrimmed(units)));
}
ColumnText trimmedRight(TextArena& arena, std::string_view text) {
  if (unitCount(text)) {
    return ColumnText(withoutSpacesBehind(text));
  }
  const QString units = qstringOf(text);
  return textIn(arena, units.first(endOfTrimmed(units)));
}

// As often as it stands there.
ColumnText withoutEnds(TextArena&, std::string_view text, std::string_view unwanted) {
  if (unwanted.empty()) {
    return ColumnText(text);
  }
  while (text.starts_with(unwanted)) {
    text.remove_prefix(unwanted.size());
  }
  while (text.ends_with(unwanted)) {
    text.remove_suffix(unwanted.size());
  }
  return ColumnText(text);
}

// The part at the index, null where there are not so many. An empty separator stands nowhere.
ColumnText partBetweenSeparators(std::string_view text, std::string_view separator, double index) {
  const double wanted = std::trunc(index);
  if (!(wanted >= 0.0 && wanted <= static_cast<double>(text.size()))) {
    return {};
  }
  std::size_t begin = 0;
  for (auto left = static_cast<std::size_t>(wanted);; --left) {
    const std::size_t end =
        separator.empty() ? std::string_view::npos : text.find(separator, begin);
    if (left == 0) {
      return ColumnText(text.substr(begin, end - begin));
    }
    if (end == std::string_view::npos) {
      return {};
    }
    begin = end + separator.size();
  }
}

// The bytes that replacing takes; nothing where it would make the text too long.
std::optional<std::size_t> bytesToReplace(std::string_view text, std::string_view before,
                                          std::string_view after, std::size_t first) {
  if (after.size() <= before.size()) {
    return text.size();
  }
  std::size_t size = text.size();
  std::size_t end = 0;
  for (std::size_t found = first; found != std::string_view::npos; found = text.find(before, end)) {
    end = found + before.size();
    size += after.size() - before.size();
  }
  const std::size_t sizeUpToLast = size - (text.size() - end);
  return sizeUpToLast > longestResultOf(text) ? std::nullopt : std::optional(size);
}

ColumnText replaced(TextArena& arena, std::string_view text, std::string_view before,
                    std::string_view after) {
  const std::size_t first = before.empty() ? std::string_view::npos : text.find(before);
  if (first == std::string_view::npos) {
    return ColumnText(text);
  }
  const std::optional<std::size_t> size = bytesToReplace(text, before, after, first);
  if (!size) {
    return {};
  }
  char* const bytes = arena.allocate(*size);
  char* next = bytes;
  std::size_t from = 0;
  for (std::size_t found = first; found != std::string_view::npos;
       found = text.find(before, from)) {
    next = std::copy_n(text.data() + from, found - from, next);
    next = std::copy_n(after.data(), after.size(), next);
    from = found + before.size();
  }
  next = std::copy(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), next);
  const auto used = static_cast<std::size_t>(next - bytes);
  arena.shrink(*size - used);
  return ColumnText({bytes, used});
}

constexpr const char* kSubstrHelp =
    "substr(x,s,l) - extract from the string x a substring starting at character of index 's' "
    "and of length 'l'";

// clang-format off
constexpr FunctionLine kLines[] = {
    {"codepoint", 1, kInString, kNumber, valueBodies<codepointOfLast>,
     "codepoint(x) - returns the unicode codepoint of the last char of x"},
    {"strlen", 1, kInString, kNumber, valueBodies<lengthOf>,
     "strlen(s) - returns the number of characters of the string s"},
    {"substr", 3, kInString, kText, valueBodies<partOfLength>,
     kSubstrHelp},
    {"mid", 3, kInString, kText, valueBodies<partOfLength>,
     kSubstrHelp},
    {"substring", 3, kInString, kText, valueBodies<partBetween>,
     "substring(x,s,e) - extract from the string x a substring starting at character of "
     "index 's' and ending at index 'e'"},
    {"left", 2, kInString, kText, valueBodies<firstUnits>,
     "left(x,l) - returns a substring composed of the first 'l' character of string x"},
    {"right", 2, kInString, kText, valueBodies<lastUnits>,
     "right(x,l) - returns a substring composed of the last 'l' character of string x"},
    {"trim", 1, kInString, kText, valueBodies<trimmed>,
     "trim(x) - returns the string x trimmed"},
    {"ltrim", 1, kInString, kText, valueBodies<trimmedLeft>,
     "ltrim(x) - returns the string x left-trimmed"},
    {"rtrim", 1, kInString, kText, valueBodies<trimmedRight>,
     "rtrim(x) - returns the string x right-trimmed"},
    // kept: the help text names the function of one argument.
    {"trim2", 2, kInString, kText, valueBodies<withoutEnds>,
     "trim(x,y) - returns the string x without y at the end/start"},
    {"charAt", 2, kInString, kNumber, valueBodies<unitAt>,
     "charAt(x,i) - returns char at position i"},
    {"replace", 3, kInString, kText, valueBodies<replaced>,
     "replace(s,before,after) - Replaces every occurrence of the string <before> with the "
     "string <after> and returns result"},
    {"split", 3, kInString, kText, valueBodies<partBetweenSeparators>,
     "split(s,separator,n) - the part n (from 0) of the string s between its separators"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> textParts() {
  return kLines;
}

}  // namespace kelvarin

// Parts of texts: lengths, pieces by position, trimming and replacing.

#include <cmath>

#include "expression/functions/text_bodies.h"
#include "expression/functions/text_positions.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

double lengthOf(const QString& text) {
  return static_cast<double>(text.size());
}

// Of the last character, which may be a pair of units.
double codepointOfLast(const QString& text) {
  if (text.isEmpty()) {
    return kNullNumber;
  }
  const QChar last = text.back();
  const bool isPair =
      last.isLowSurrogate() && text.size() > 1 && text[text.size() - 2].isHighSurrogate();
  return isPair ? QChar::surrogateToUcs4(text[text.size() - 2], last) : last.unicode();
}

double unitAt(const QString& text, double position) {
  const double index = std::trunc(position);
  if (!(index >= 0 && index < static_cast<double>(text.size()))) {
    return -1.0;
  }
  return text[static_cast<qsizetype>(index)].unicode();
}

QString partOfLength(const QString& text, double start, double length) {
  const qsizetype from = limitedPosition(start, text.size());
  return text.sliced(from, limitedLength(length, from, text.size()));
}

// Null, not just empty, when the end is not behind the start.
QString partBetween(const QString& text, double start, double end) {
  if (std::trunc(end) <= std::trunc(start)) {
    return {};
  }
  const qsizetype from = limitedPosition(start, text.size());
  const qsizetype to = limitedPosition(end, text.size());
  return from < to ? text.sliced(from, to - from) : QStringLiteral("");
}

QString firstUnits(const QString& text, double length) {
  return partOfLength(text, 0.0, length);
}

QString lastUnits(const QString& text, double length) {
  return text.last(limitedPosition(length, text.size()));
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

QString trimmed(const QString& text) {
  return text.trimmed();
}
QString trimmedLeft(const QString& text) {
  return text.sliced(startOfTrimmed(text));
}
QString trimmedRight(const QString& text) {
  return text.first(endOfTrimmed(text));
}

// As often as it stands there.
std::optional<std::string> withoutEnds(std::string_view text, std::string_view unwanted) {
  if (unwanted.empty()) {
    return std::string(text);
  }
  while (text.starts_with(unwanted)) {
    text.remove_prefix(unwanted.size());
  }
  while (text.ends_with(unwanted)) {
    text.remove_suffix(unwanted.size());
  }
  return std::string(text);
}

std::optional<std::string> replaced(std::string_view text, std::string_view before,
                                    std::string_view after) {
  if (before.empty()) {
    return std::string(text);
  }
  const std::size_t longest = longestResultOf(text);
  std::string result;
  std::size_t from = 0;
  while (result.size() <= longest) {
    const std::size_t found = text.find(before, from);
    result.append(text.substr(from, found - from));
    if (found == std::string_view::npos) {
      return result;
    }
    result.append(after);
    from = found + before.size();
  }
  return std::nullopt;
}

constexpr const char* kSubstrHelp =
    "substr(x,s,l) - extract from the string x a substring starting at character of index 's' "
    "and of length 'l'";

// clang-format off
constexpr FunctionLine kLines[] = {
    {"codepoint", 1, kInString, kNumber, valueBody<codepointOfLast>,
     "codepoint(x) - returns the unicode codepoint of the last char of x"},
    {"strlen", 1, kInString, kNumber, valueBody<lengthOf>,
     "strlen(s) - returns the number of characters of the string s"},
    {"substr", 3, kInString, kText, valueBody<partOfLength>,
     kSubstrHelp},
    {"mid", 3, kInString, kText, valueBody<partOfLength>,
     kSubstrHelp},
    {"substring", 3, kInString, kText, valueBody<partBetween>,
     "substring(x,s,e) - extract from the string x a substring starting at character of "
     "index 's' and ending at index 'e'"},
    {"left", 2, kInString, kText, valueBody<firstUnits>,
     "left(x,l) - returns a substring composed of the first 'l' character of string x"},
    {"right", 2, kInString, kText, valueBody<lastUnits>,
     "right(x,l) - returns a substring composed of the last 'l' character of string x"},
    {"trim", 1, kInString, kText, valueBody<trimmed>,
     "trim(x) - returns the string x trimmed"},
    {"ltrim", 1, kInString, kText, valueBody<trimmedLeft>,
     "ltrim(x) - returns the string x left-trimmed"},
    {"rtrim", 1, kInString, kText, valueBody<trimmedRight>,
     "rtrim(x) - returns the string x right-trimmed"},
    // kept: the help text names the function of one argument.
    {"trim2", 2, kInString, kText, valueBody<withoutEnds>,
     "trim(x,y) - returns the string x without y at the end/start"},
    {"charAt", 2, kInString, kNumber, valueBody<unitAt>,
     "charAt(x,i) - returns char at position i"},
    {"replace", 3, kInString, kText, valueBody<replaced>,
     "replace(s,before,after) - Replaces every occurrence of the string <before> with the "
     "string <after> and returns result"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> textParts() {
  return kLines;
}

}  // namespace kelvarin

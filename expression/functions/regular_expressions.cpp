// Searching and replacing by regular expressions.
//
// A pattern that cannot be used fails the row; one that an expression names as it is keeps the
// expression from being compiled.

#include <array>
#include <cmath>
#include <optional>

#include "expression/functions/growing_text.h"
#include "expression/functions/messages.h"
#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

Outcome<bool> isFound(FunctionContext& context, std::string_view text, std::string_view regex) {
  const TextPattern& pattern = context.patterns.of(regex);
  if (pattern.fault()) {
    return Failure{pattern.fault()->message};
  }
  return pattern.isIn(text);
}

// Null where nothing matches, where the pattern has no such group and where it took no part.
Outcome<ColumnText> extracted(FunctionContext& context, std::string_view text,
                              std::string_view regex, double group) {
  const TextPattern& pattern = context.patterns.of(regex);
  if (pattern.fault()) {
    return Failure{pattern.fault()->message};
  }
  const double wanted = std::trunc(group);
  if (!(wanted >= 0.0 && wanted <= static_cast<double>(pattern.groupCount()))) {
    return ColumnText();
  }
  const std::string_view found = pattern.firstMatch(text, static_cast<std::size_t>(wanted));
  return found.data() == nullptr ? ColumnText() : ColumnText(found);
}

// `\0` is the match, `\1` to `\9` are its groups and `\\` is a backslash.
std::optional<PatternFault> faultOfReplacement(std::string_view by, std::size_t groupCount) {
  constexpr std::size_t kEscape = 2;
  for (std::size_t at = by.find('\\'); at != std::string_view::npos;
       at = by.find('\\', at + kEscape)) {
    const bool isLast = at + 1 == by.size();
    const char c = isLast ? ' ' : by[at + 1];
    const bool isReference = c >= '0' && c <= '9';
    if (c == '\\' || (isReference && static_cast<std::size_t>(c - '0') <= groupCount)) {
      continue;
    }
    const auto position = static_cast<std::size_t>(qstringOf(by.substr(0, at)).size());
    const std::size_t size = isLast ? 1 : 1 + sizeOfCharacterAt(by, at + 1);
    const QString escape = qstringOf(by.substr(at, size));
    const QString reason = isReference ? messages::noSuchGroup(escape, groupCount)
                                       : messages::unknownReplacementEscape(escape);
    return PatternFault{messages::wrongReplacement(shownPattern(by), position, reason), position};
  }
  return std::nullopt;
}

// A text without its matches, each replaced by what `by` makes of it.
class Replacement {
 public:
  Replacement(TextArena& arena, std::string_view text, const TextPattern& pattern,
              std::string_view by)
      : m_pattern(pattern),
        m_text(text.data() == nullptr ? "" : text),
        m_by(by),
        m_groupCount(std::min(pattern.groupCount() + 1, TextPattern::kGroupsAtOnce)),
        m_result(arena, longestResultOf(text)) {}

  // Null where the text would become too long.
  ColumnText run() {
    if (!findFrom(0)) {
      return ColumnText(m_text);
    }
    m_result.reserve(m_text.size());
    do {
      replaceOrSkip();
    } while (m_done <= m_text.size() && findFrom(m_done));
    if (m_done < m_text.size()) {
      m_result.append(m_text.substr(m_done));
    }
    return m_result.take();
  }

 private:
  bool findFrom(std::size_t from) {
    return !m_result.isTooLong() && m_pattern.find(m_text, from, {m_groups.data(), m_groupCount});
  }

  // An empty match right behind a match counts as part of it, and none is inside a character.
  void replaceOrSkip() {
    const auto start = static_cast<std::size_t>(m_groups[0].data() - m_text.data());
    const std::size_t end = start + m_groups[0].size();
    if (start == end && (end == m_endOfLast || isInsideCharacter(start))) {
      const std::size_t next =
          start == m_text.size() ? start + 1 : start + sizeOfCharacterAt(m_text, start);
      m_result.append(m_text.substr(m_done, next - m_done));
      m_done = next;
      return;
    }
    m_result.append(m_text.substr(m_done, start - m_done));
    appendReplacement();
    m_done = end;
    m_endOfLast = end;
  }

  bool isInsideCharacter(std::size_t index) const {
    constexpr unsigned kContinuationBits = 0xC0;
    constexpr unsigned kContinuation = 0x80;
    return index < m_text.size() &&
           (static_cast<unsigned char>(m_text[index]) & kContinuationBits) == kContinuation;
  }

  void appendReplacement() {
    std::size_t from = 0;
    for (std::size_t at = m_by.find('\\'); at != std::string_view::npos;
         at = m_by.find('\\', from)) {
      m_result.append(m_by.substr(from, at - from));
      const char c = m_by[at + 1];
      m_result.append(c == '\\' ? m_by.substr(at, 1) : m_groups[static_cast<std::size_t>(c - '0')]);
      from = at + 2;
    }
    m_result.append(m_by.substr(from));
  }

  const TextPattern& m_pattern;
  const std::string_view m_text;
  const std::string_view m_by;
  const std::size_t m_groupCount;
  std::array<std::string_view, TextPattern::kGroupsAtOnce> m_groups;
  std::size_t m_done = 0;  // bytes of the text
  std::optional<std::size_t> m_endOfLast;
  GrowingText m_result;
};

Outcome<ColumnText> replaced(FunctionContext& context, TextArena& arena, std::string_view text,
                             std::string_view regex, std::string_view by) {
  const TextPattern& pattern = context.patterns.of(regex);
  if (pattern.fault()) {
    return Failure{pattern.fault()->message};
  }
  if (const std::optional<PatternFault> fault = faultOfReplacement(by, pattern.groupCount())) {
    return Failure{fault->message};
  }
  return Replacement(arena, text, pattern, by).run();
}

// The pattern is the second argument of all of them, a replacement the third one.
std::optional<ConstantFault> faultOfPattern(std::span<const std::optional<std::string>> constants) {
  if (!constants[1]) {
    return std::nullopt;
  }
  const TextPattern pattern(*constants[1]);
  if (pattern.fault()) {
    return ConstantFault{1, pattern.fault()->message, pattern.fault()->position};
  }
  if (constants.size() > 2 && constants[2]) {
    if (const auto fault = faultOfReplacement(*constants[2], pattern.groupCount())) {
      return ConstantFault{2, fault->message, fault->position};
    }
  }
  return std::nullopt;
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"regexMatch", 2, kInString, kTest, testBodies<isFound>,
     "regexMatch(s,pattern) - does the regular expression match somewhere in the string s?",
     {}, Source::arguments, faultOfPattern},
    {"regexExtract", 3, kInString, kText, valueBodies<extracted>,
     "regexExtract(s,pattern,group) - the group (0: all of it) of the first match in the string s",
     {}, Source::arguments, faultOfPattern},
    {"regexReplace", 3, kInString, kText, valueBodies<replaced>,
     "regexReplace(s,pattern,by) - replaces every match in the string s; \\1 to \\9 are its groups",
     {}, Source::arguments, faultOfPattern},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> regularExpressions() {
  return kLines;
}

}  // namespace kelvarin

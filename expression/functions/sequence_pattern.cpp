#include "expression/functions/sequence_pattern.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kMaxSteps = 64;

std::size_t indexOf(char c) {
  return static_cast<unsigned char>(c);
}

bool isAsciiCharacter(char c) {
  return indexOf(c) < 0x80;
}

}  // namespace

class SequenceParser {
 public:
  explicit SequenceParser(std::string_view pattern) : m_rest(pattern) {}

  std::optional<SequencePattern> parse() {
    m_made.m_isAtStart = accept("^");
    while (!m_rest.empty()) {
      if (m_rest == "$") {
        m_made.m_isAtEnd = true;
        break;
      }
      if (m_made.m_steps.size() == kMaxSteps || !parsePart()) {
        return std::nullopt;
      }
    }
    const auto first = std::ranges::find(m_made.m_steps, Step::Kind::bytes, &Step::kind);
    m_made.m_first = static_cast<std::size_t>(first - m_made.m_steps.begin());
    const bool isWhole = m_open.empty() && first != m_made.m_steps.end();
    return isWhole && m_made.isDeterministic() ? std::optional(std::move(m_made)) : std::nullopt;
  }

 private:
  using Step = SequencePattern::Step;
  using Bytes = std::array<bool, 256>;

  static constexpr std::size_t kNoGroup = 0;

  bool accept(std::string_view sign) {
    const bool isThere = m_rest.starts_with(sign);
    m_rest.remove_prefix(isThere ? sign.size() : 0);
    return isThere;
  }

  bool parsePart() {
    if (accept("(?:")) {
      m_open.push_back(kNoGroup);
      return true;
    }
    if (m_rest.starts_with("(?")) {
      return false;
    }
    if (accept("(")) {
      m_open.push_back(++m_groupCount);
      addStep({.kind = Step::Kind::opening, .group = m_groupCount});
      return m_groupCount <= SequencePattern::kMaxGroups;
    }
    if (accept(")")) {
      return closeGroup();
    }
    Step step;
    return parseSet(step.isIn) && parseCount(step) && addStep(step);
  }

  bool addStep(const Step& step) {
    m_made.m_steps.push_back(step);
    return true;
  }

  bool closeGroup() {
    if (m_open.empty() || isAtCount()) {
      return false;
    }
    if (m_open.back() != kNoGroup) {
      addStep({.kind = Step::Kind::closing, .group = m_open.back()});
    }
    m_open.pop_back();
    return true;
  }

  bool isAtCount() const {
    return !m_rest.empty() &&
           std::string_view("*+?{").find(m_rest.front()) != std::string_view::npos;
  }

  // What one character may be.
  bool parseSet(Bytes& bytes) {
    constexpr std::string_view kSigns = "*+?{}]|^$";
    if (accept("[")) {
      return parseSetInBrackets(bytes);
    }
    if (accept("\\")) {
      return parseEscape(bytes);
    }
    if (accept(".")) {
      bytes.fill(true);
      bytes['\n'] = false;
      m_made.m_isForAscii = true;
      return true;
    }
    const char c = m_rest.front();
    if (kSigns.find(c) != std::string_view::npos) {
      return false;
    }
    bytes[indexOf(c)] = true;
    m_rest.remove_prefix(1);
    return isAsciiCharacter(c) || !isAtCount();  // a count is for all bytes of the character
  }

  bool parseEscape(Bytes& bytes) {
    if (m_rest.empty()) {
      return false;
    }
    const char c = m_rest.front();
    m_rest.remove_prefix(1);
    if (c == 'd' || c == 'w') {
      addRange(bytes, '0', '9');
    }
    if (c == 'w') {
      addRange(bytes, 'a', 'z');
      addRange(bytes, 'A', 'Z');
      bytes['_'] = true;
    }
    if (c == 's') {
      for (const char blank : {' ', '\t', '\n', '\f', '\r'}) {
        bytes[indexOf(blank)] = true;
      }
    }
    constexpr std::string_view kItself = "\\.+*?()|[]{}^$-/:;,=!#%&@~\"'<> _";
    const bool isItself = kItself.find(c) != std::string_view::npos;
    if (isItself) {
      bytes[indexOf(c)] = true;
    }
    return isItself || c == 'd' || c == 'w' || c == 's';
  }

  static void addRange(Bytes& bytes, char first, char last) {
    std::fill(bytes.begin() + first, bytes.begin() + last + 1, true);
  }

  bool parseSetInBrackets(Bytes& bytes) {
    const bool isNegated = accept("^");
    bool isFirst = true;
    while (!accept("]")) {
      if (m_rest.empty() || !parseRange(bytes, isFirst)) {
        return false;
      }
      isFirst = false;
    }
    if (isFirst) {
      return false;  // the bracket would be a character of the set
    }
    if (isNegated) {
      std::ranges::transform(bytes, bytes.begin(), std::logical_not());
      m_made.m_isForAscii = true;
    }
    return true;
  }

  bool parseRange(Bytes& bytes, bool isFirst) {
    if (accept("\\")) {
      return parseEscape(bytes) && (m_rest.starts_with("-]") || !m_rest.starts_with('-'));
    }
    const char first = m_rest.front();
    const bool isPlainMinus = isFirst || m_rest.starts_with("-]");
    if (first == '[' || !isAsciiCharacter(first) || (first == '-' && !isPlainMinus)) {
      return false;
    }
    m_rest.remove_prefix(1);
    if (m_rest.size() < 2 || m_rest[0] != '-' || m_rest[1] == ']') {
      bytes[indexOf(first)] = true;
      return true;
    }
    const char last = m_rest[1];
    m_rest.remove_prefix(2);
    if (last == '\\' || last == '[' || !isAsciiCharacter(last) || last < first) {
      return false;
    }
    addRange(bytes, first, last);
    return true;
  }

  bool parseCount(Step& step) {
    if (accept("*")) {
      step.least = 0;
      step.largest = kNoLimit;
    } else if (accept("+")) {
      step.largest = kNoLimit;
    } else if (accept("?")) {
      step.least = 0;
    } else if (accept("{")) {
      if (!parseNumber(step.least)) {
        return false;
      }
      step.largest = step.least;
      if (accept(",")) {
        step.largest = kNoLimit;
        if (!m_rest.starts_with('}') && !parseNumber(step.largest)) {
          return false;
        }
      }
      if (!accept("}")) {
        return false;
      }
    } else {
      return true;
    }
    return !isAtCount();
  }

  bool parseNumber(std::size_t& number) {
    const char* const end = m_rest.data() + m_rest.size();
    const auto read = std::from_chars(m_rest.data(), end, number);
    m_rest.remove_prefix(static_cast<std::size_t>(read.ptr - m_rest.data()));
    return read.ec == std::errc();
  }

  std::string_view m_rest;
  SequencePattern m_made;
  std::vector<std::size_t> m_open;  // groups
  std::size_t m_groupCount = 0;
};

std::optional<SequencePattern> SequencePattern::of(std::string_view pattern) {
  return SequenceParser(pattern).parse();
}

// No character may both go on with a repetition and begin what can follow it.
bool SequencePattern::isDeterministic() const {
  for (std::size_t i = 0; i < m_steps.size(); ++i) {
    const Step& repeated = m_steps[i];
    if (repeated.kind != Step::Kind::bytes || repeated.least == repeated.largest) {
      continue;
    }
    for (std::size_t k = i + 1; k < m_steps.size(); ++k) {
      const Step& next = m_steps[k];
      if (next.kind != Step::Kind::bytes) {
        continue;
      }
      for (std::size_t byte = 0; byte < next.isIn.size(); ++byte) {
        if (repeated.isIn[byte] && next.isIn[byte]) {
          return false;
        }
      }
      if (next.least > 0) {
        break;
      }
    }
  }
  return true;
}

SequencePattern::Answer SequencePattern::find(std::string_view text, std::size_t from,
                                              std::span<std::string_view> groups) const {
  constexpr std::size_t kStepsPerByte = 4;
  constexpr std::size_t kFreeSteps = 64;
  if (m_isForAscii && !isAscii(text.substr(from))) {
    return Answer::unknown;
  }
  if (m_isAtStart && from > 0) {
    return Answer::none;
  }
  const Step& first = m_steps[m_first];
  const std::size_t last = m_isAtStart ? 0 : text.size();
  std::size_t steps = kFreeSteps + kStepsPerByte * (text.size() - from);
  Groups found;
  for (std::size_t start = from; start <= last; ++start) {
    if (first.least > 0 && (start == text.size() || !first.isIn[indexOf(text[start])])) {
      continue;
    }
    if (matchAt(text, start, found, steps)) {
      for (std::size_t i = 0; i < groups.size(); ++i) {
        groups[i] = text.substr(found[i].begin, found[i].end - found[i].begin);
      }
      return Answer::found;
    }
    if (steps == 0) {
      return Answer::unknown;
    }
  }
  return Answer::none;
}

// `steps` is what may still be looked at, and 0 where it does not suffice.
bool SequencePattern::matchAt(std::string_view text, std::size_t start, Groups& groups,
                              std::size_t& steps) const {
  std::size_t at = start;
  for (const Step& step : m_steps) {
    if (step.kind == Step::Kind::opening) {
      groups[step.group].begin = at;
      continue;
    }
    if (step.kind == Step::Kind::closing) {
      groups[step.group].end = at;
      continue;
    }
    const std::size_t end = at + std::min(step.largest, text.size() - at);
    const std::size_t begin = at;
    while (at < end && step.isIn[indexOf(text[at])]) {
      ++at;
    }
    if (at - begin < step.least) {
      steps -= std::min(steps, at - start + 1);
      return false;
    }
  }
  groups[0] = {start, at};
  const bool isMatch = !m_isAtEnd || at == text.size();
  steps -= isMatch ? 0 : std::min(steps, at - start + 1);
  return isMatch;
}

}  // namespace kelvarin

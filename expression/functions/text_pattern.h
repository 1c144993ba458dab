// A regular expression: compiled once, searched in any number of texts.
//
// Searching takes time in proportion to the text, whatever the pattern is. Bytes that are no UTF-8
// match nothing, but for an encoded half of a surrogate pair, which is a character.
// Used by the functions of regular_expressions.cpp, through RecentPatterns.
// Threads: read-only once it is made; any number of threads share it.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <QString>

#include "expression/functions/sequence_pattern.h"

namespace re2 {
class RE2;
}

namespace kelvarin {

// What is wrong with a pattern, or with the text that is to replace its matches.
struct PatternFault {
  QString message;  // what, where and what to do
  // In 16-bit units; nothing where it is the text as a whole.
  std::optional<std::size_t> position = {};
};

class TextPattern {
 public:
  // A larger pattern or one with more groups is refused, so that memory is bounded.
  static constexpr std::size_t kMaxBytes = std::size_t{64} << 10;
  static constexpr std::size_t kMaxGroups = 100;

  explicit TextPattern(std::string_view pattern);
  ~TextPattern();
  TextPattern(const TextPattern&) = delete;
  TextPattern& operator=(const TextPattern&) = delete;

  bool isMadeOf(std::string_view pattern) const { return m_text == pattern.substr(0, kKeptBytes); }
  // A pattern with a fault must not be searched.
  const std::optional<PatternFault>& fault() const { return m_fault; }
  // Without the match as a whole.
  std::size_t groupCount() const { return m_groupCount; }

  // More groups than these cannot be asked for at once, the match itself included.
  static constexpr std::size_t kGroupsAtOnce = 10;

  bool isIn(std::string_view text) const;
  // One group of the first match, 0 being all of it and groupCount() the last one. With a null
  // pointer where nothing matches or the group took no part.
  std::string_view firstMatch(std::string_view text, std::size_t group) const;
  // The first match that begins at `from` or behind, with as many groups as `groups` has.
  bool find(std::string_view text, std::size_t from, std::span<std::string_view> groups) const;

 private:
  SequencePattern::Answer findSequence(std::string_view text, std::size_t from,
                                       std::span<std::string_view> groups) const;

  // Of a text that is too long, enough to know this.
  static constexpr std::size_t kKeptBytes = kMaxBytes + 1;

  std::string m_text;
  std::unique_ptr<const re2::RE2> m_compiled;
  std::optional<SequencePattern> m_sequence;  // finds the same, faster
  std::optional<PatternFault> m_fault;
  std::size_t m_groupCount = 0;
};

// As messages show it: a long one is cut.
QString shownPattern(std::string_view pattern);

}  // namespace kelvarin

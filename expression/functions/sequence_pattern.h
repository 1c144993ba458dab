// A regular expression that is a sequence: sets of characters with counts, one after another, of
// which no repetition can take what the next set needs. So a match is found by going along the text
// once, several times faster than by a library that must follow all possibilities.
//
// Part of TextPattern, for patterns that the library has compiled; it has the same matches.
// Threads: read-only once it is made.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace kelvarin {

class SequencePattern {
 public:
  enum class Answer { found, none, unknown };

  // Nothing for patterns that are none: with alternatives, repeated groups, flags, and all that is
  // rare.
  static std::optional<SequencePattern> of(std::string_view pattern);

  // As TextPattern::find. Unknown where the text is not one for sequences, or where the search
  // would take more than time in proportion to it.
  Answer find(std::string_view text, std::size_t from, std::span<std::string_view> groups) const;

 private:
  friend class SequenceParser;

  static constexpr std::size_t kMaxGroups = 9;

  struct Step {
    enum class Kind { bytes, opening, closing };

    Kind kind = Kind::bytes;
    std::size_t group = 0;  // that opens or closes
    std::array<bool, 256> isIn = {};
    std::size_t least = 1;
    std::size_t largest = 1;
  };
  struct Group {  // not initialized, since a match sets all that a pattern has
    std::size_t begin;
    std::size_t end;
  };
  using Groups = std::array<Group, kMaxGroups + 1>;

  bool isDeterministic() const;
  bool matchAt(std::string_view text, std::size_t start, Groups& groups, std::size_t& steps) const;

  std::vector<Step> m_steps;
  std::size_t m_first = 0;  // the first step of bytes
  bool m_isAtStart = false;
  bool m_isAtEnd = false;
  bool m_isForAscii = false;  // some set has all characters beyond ASCII
};

}  // namespace kelvarin

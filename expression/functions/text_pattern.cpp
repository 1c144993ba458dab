#include "expression/functions/text_pattern.h"

#include <array>
#include <utility>

#include <re2/re2.h>

#include "expression/functions/messages.h"
#include "expression/functions/pattern_fault.h"

namespace kelvarin {

namespace {

re2::StringPiece pieceOf(std::string_view text) {
  // Never with a null pointer, which would look like a group that took no part.
  return {text.data() == nullptr ? "" : text.data(), text.size()};
}

std::string_view viewOf(const re2::StringPiece& piece) {
  return {piece.data(), piece.size()};
}

template <std::size_t kCapacity>
std::string_view groupOfFirstMatch(const re2::RE2& pattern, std::string_view text,
                                   std::size_t group) {
  std::array<re2::StringPiece, kCapacity> pieces;
  const bool isFound = pattern.Match(pieceOf(text), 0, text.size(), re2::RE2::UNANCHORED,
                                     pieces.data(), static_cast<int>(group + 1));
  return isFound ? viewOf(pieces[group]) : std::string_view();
}

}  // namespace

TextPattern::TextPattern(std::string_view pattern) : m_text(pattern.substr(0, kKeptBytes)) {
  if (pattern.size() > kMaxBytes) {
    m_fault = faultOfWhole(pattern, messages::patternTooLong(kMaxBytes));
    return;
  }
  m_fault = singleByteIn(pattern);
  if (m_fault) {
    return;
  }
  auto compiled = std::make_unique<const re2::RE2>(pieceOf(pattern), boundedOptions());
  if (!compiled->ok()) {
    m_fault = faultOf(*compiled, pattern);
    return;
  }
  m_groupCount = static_cast<std::size_t>(compiled->NumberOfCapturingGroups());
  if (m_groupCount > kMaxGroups) {
    m_fault = faultOfWhole(pattern, messages::tooManyGroups(m_groupCount, kMaxGroups));
    return;
  }
  m_compiled = std::move(compiled);
  m_sequence = SequencePattern::of(pattern);
}

TextPattern::~TextPattern() = default;

SequencePattern::Answer TextPattern::findSequence(std::string_view text, std::size_t from,
                                                  std::span<std::string_view> groups) const {
  return m_sequence ? m_sequence->find(text, from, groups) : SequencePattern::Answer::unknown;
}

bool TextPattern::isIn(std::string_view text) const {
  if (const auto answer = findSequence(text, 0, {}); answer != SequencePattern::Answer::unknown) {
    return answer == SequencePattern::Answer::found;
  }
  return m_compiled->Match(pieceOf(text), 0, text.size(), re2::RE2::UNANCHORED, nullptr, 0);
}

std::string_view TextPattern::firstMatch(std::string_view text, std::size_t group) const {
  if (group < kGroupsAtOnce) {
    std::array<std::string_view, kGroupsAtOnce> groups;
    const auto answer = findSequence(text, 0, {groups.data(), group + 1});
    if (answer != SequencePattern::Answer::unknown) {
      return groups[group];
    }
  }
  // Whether there is a match shows fast with every pattern, where it begins not with all of them.
  constexpr std::size_t kLongText = std::size_t{16} << 10;
  if (text.size() > kLongText && !isIn(text)) {
    return {};
  }
  // Memory for all groups that are possible would take longer to initialize than most searches.
  return group < kGroupsAtOnce ? groupOfFirstMatch<kGroupsAtOnce>(*m_compiled, text, group)
                               : groupOfFirstMatch<kMaxGroups + 1>(*m_compiled, text, group);
}

bool TextPattern::find(std::string_view text, std::size_t from,
                       std::span<std::string_view> groups) const {
  const auto answer = findSequence(text, from, groups);
  if (answer != SequencePattern::Answer::unknown) {
    return answer == SequencePattern::Answer::found;
  }
  std::array<re2::StringPiece, kGroupsAtOnce> pieces;
  if (!m_compiled->Match(pieceOf(text), from, text.size(), re2::RE2::UNANCHORED, pieces.data(),
                         static_cast<int>(groups.size()))) {
    return false;
  }
  for (std::size_t i = 0; i < groups.size(); ++i) {
    groups[i] = viewOf(pieces[i]);
  }
  return true;
}

}  // namespace kelvarin

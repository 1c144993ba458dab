// Words as a language has them: few that are frequent and short, thousands that are rare, and words
// that like to follow each other.
//
// Used for the sentences and the lines of code of the benchmark's texts.
// Threads: plain values once made.
#pragma once

#include <string>

#include "benchmarks/gel/chance.h"

namespace kelvarin {

class Vocabulary {
 public:
  // The first words are given, the others made of syllables; the same for the same seed.
  Vocabulary(std::vector<std::string> firstWords, std::size_t size, std::uint64_t seed);

  const std::string& word(std::size_t index) const { return m_words[index]; }
  std::size_t draw(Chance& chance) const { return m_frequencies.draw(chance); }
  // A word that stands behind another one: in part of the cases one of few that it prefers.
  std::size_t drawAfter(std::size_t before, Chance& chance) const;

 private:
  static constexpr std::size_t kPreferred = 12;

  std::size_t preferred(std::size_t before, std::size_t index) const {
    return m_followers[before * kPreferred + index];
  }

  std::vector<std::string> m_words;
  std::vector<std::size_t> m_followers;  // kPreferred of each word
  WeightedChoice m_frequencies;
  WeightedChoice m_preference;
};

}  // namespace kelvarin

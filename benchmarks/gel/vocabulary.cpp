#include "benchmarks/gel/vocabulary.h"

#include <set>

namespace kelvarin {

namespace {

constexpr double kExponent = 0.85;
constexpr double kPreferenceExponent = 0.8;
constexpr double kPreferredShare = 0.3;

constexpr const char* kOnsets[] = {"b",  "br", "c", "ch", "cl", "d",  "dr", "f", "fl", "g",
                                   "gr", "h",  "j", "k",  "l",  "m",  "n",  "p", "pl", "pr",
                                   "qu", "r",  "s", "sh", "st", "tr", "t",  "v", "w",  ""};
constexpr const char* kVowels[] = {"a", "e", "i", "o", "u", "ea", "ou", "ai", "e", "a"};
constexpr const char* kCodas[] = {"",   "n", "r",  "l", "t",  "s",  "m",
                                  "nd", "",  "rt", "",  "ck", "st", "p"};
constexpr const char* kEndings[] = {"",   "",     "s",  "ed", "ing",  "er",  "ion",
                                    "ly", "ment", "al", "",   "able", "ity", "ate"};

template <std::size_t count>
const char* oneOf(const char* const (&pieces)[count], Chance& chance) {
  return pieces[chance.below(count)];
}

std::string madeWord(Chance& chance) {
  std::string word;
  for (std::uint64_t syllables = 1 + chance.below(2); syllables > 0; --syllables) {
    word += oneOf(kOnsets, chance);
    word += oneOf(kVowels, chance);
    word += oneOf(kCodas, chance);
  }
  return word + oneOf(kEndings, chance);
}

}  // namespace

Vocabulary::Vocabulary(std::vector<std::string> firstWords, std::size_t size, std::uint64_t seed)
    : m_words(std::move(firstWords)),
      m_frequencies(WeightedChoice::zipf(size, kExponent)),
      m_preference(WeightedChoice::zipf(kPreferred, kPreferenceExponent)) {
  Chance chance(seed);
  std::set<std::string> known(m_words.begin(), m_words.end());
  while (m_words.size() < size) {
    std::string word = madeWord(chance);
    if (word.size() > 1 && known.insert(word).second) {
      m_words.push_back(std::move(word));
    }
  }
  for (std::size_t i = 0; i < size * kPreferred; ++i) {
    m_followers.push_back(m_frequencies.drawn(chance.fraction()));
  }
}

std::size_t Vocabulary::drawAfter(std::size_t before, Chance& chance) const {
  const std::size_t word = chance.fraction() < kPreferredShare
                               ? preferred(before, m_preference.drawn(chance.fraction()))
                               : m_frequencies.drawn(chance.fraction());
  double probability = (1 - kPreferredShare) * m_frequencies.probability(word);
  for (std::size_t i = 0; i < kPreferred; ++i) {
    if (preferred(before, i) == word) {
      probability += kPreferredShare * m_preference.probability(i);
    }
  }
  chance.addDraw(probability);
  return word;
}

}  // namespace kelvarin

// Texts as people write them: sentences, lines of code, and the addresses that are made of words.
//
// Each draw adds its information to the Chance.
// Threads: plain values once made.
#pragma once

#include <string>

#include "benchmarks/gel/vocabulary.h"

namespace kelvarin {

class WrittenTexts {
 public:
  WrittenTexts();

  std::string sentence(Chance& chance) const;
  std::string lineOfCode(Chance& chance) const;
  std::string url(Chance& chance) const;
  std::string email(Chance& chance) const;

 private:
  // Appends the template with what it draws in place of each `$` and letter.
  void appendCode(std::string_view piece, Chance& chance, int depth, std::string& line) const;
  void appendDrawn(char kind, Chance& chance, int depth, std::string& line) const;
  std::string identifier(Chance& chance) const;
  const std::string& firstWordOf(std::uint64_t limit, Chance& chance) const;

  Vocabulary m_words;
  Vocabulary m_identifiers;
  WeightedChoice m_statements;
  WeightedChoice m_expressions;
  WeightedChoice m_indents;
};

}  // namespace kelvarin

// Random expressions of texts, numbers and conditions, and random values for their variables.
//
// Functions come from the function table, so that a new one takes part by itself. Most arguments
// have the type that a function is made for; some have another, to reach the rules about types.
// Used by batch_agreement_test.cpp.
#pragma once

#include <array>
#include <random>
#include <string>
#include <vector>

#include "expression/functions/function_line.h"

namespace kelvarin {

class RandomTypedExpression {
 public:
  static constexpr std::array kNumbers = {"a", "b", "x_1", "sum"};
  static constexpr std::array kTexts = {"s", "t", "u", "left"};

  explicit RandomTypedExpression(unsigned seed);

  // In UTF-8.
  std::string expression();
  // Null, infinite, whole, small and large numbers.
  double number();
  // Bytes that need not be UTF-8.
  std::string text();
  bool isChance(unsigned percent) { return below(100) < percent; }

 private:
  std::string textOf(int depth);
  std::string numberOf(int depth);
  std::string conditionOf(int depth);
  std::string valueOf(int depth);
  // Of one of both, in any order.
  std::string choice(int depth, const std::string& first, const std::string& second);
  std::string call(const FunctionLine& line, int depth);
  std::string argument(const FunctionLine& line, int index, int depth);
  std::string textLiteral();
  unsigned below(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }
  template <typename List>
  const auto& oneOf(const List& list) {
    return list[below(static_cast<unsigned>(std::size(list)))];
  }

  std::mt19937 m_random;
  std::vector<const FunctionLine*> m_texts;  // functions by their results
  std::vector<const FunctionLine*> m_numbers;
  std::vector<const FunctionLine*> m_tests;
  std::vector<const FunctionLine*> m_choices;
  // Those that fail at some rows.
  std::vector<const FunctionLine*> m_fallibleTexts;
  std::vector<const FunctionLine*> m_fallibleTests;
};

}  // namespace kelvarin

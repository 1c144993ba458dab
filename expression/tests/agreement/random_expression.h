// Random expressions of the whole numeric language, and random rows of values for them.
//
// Functions come from the function table, so that a new one takes part by itself. Used by
// agreement_test.cpp.
#pragma once

#include <array>
#include <random>
#include <string>
#include <vector>

#include "expression/functions/function_line.h"

namespace kelvarin {

class RandomExpression {
 public:
  // Number variables; most of them hide a name of a library.
  static constexpr std::array kNumbers = {"a", "b", "c", "x_1", "e", "k", "M", "sum", "gr\xF6\xDF"};
  static constexpr std::array kTexts = {"t", "n"};

  explicit RandomExpression(unsigned seed);

  // Latin-1. Most expressions keep conditions and numbers apart, as the String back-end wants it.
  std::string expression();
  // One value a number variable; every second one is special: zeros, infinities, NaNs, nulls,
  // halves, the smallest and the largest.
  std::vector<double> row();

 private:
  std::string number(int depth);
  std::string condition(int depth);
  std::string operand(int depth);
  std::string truth(int depth);
  std::string call(int depth, const FunctionLine& line);
  std::string libraryCall(int depth);
  std::string leaf();
  std::string literal();
  std::string blank() { return isChance(90) ? "" : std::string(1, " \t\n"[below(3)]); }
  unsigned below(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }
  bool isChance(unsigned percent) { return below(100) < percent; }
  template <typename List>
  const auto& oneOf(const List& list) {
    return list[below(static_cast<unsigned>(std::size(list)))];
  }

  std::mt19937 m_random;
  std::vector<const FunctionLine*> m_functions;  // those of numbers, on two back-ends or more
  std::vector<const FunctionLine*> m_tests;
  bool m_isLoose = false;  // numbers serve as conditions and conditions as numbers
};

}  // namespace kelvarin

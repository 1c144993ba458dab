// Random expressions that parse, over the variables of LibraryParser, and random rows of values for
// them.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace kelvarin::jit {

class RandomExpression {
 public:
  explicit RandomExpression(unsigned seed) : m_random(seed) {}

  std::string expression();
  // One value a variable; every second one is special: zeros, infinities, NaNs, nulls, the smallest
  // and the largest.
  std::vector<double> row();

 private:
  std::string expression(int depth);
  std::string operand(int depth);  // starts with no sign
  std::string leaf();
  std::string number();
  std::string call(int depth);
  std::string arguments(int count, int depth);
  std::string blank();
  unsigned below(unsigned limit);
  bool isChance(unsigned percent) { return below(100) < percent; }
  template <typename List>
  auto oneOf(const List& list) {
    return list[below(static_cast<unsigned>(std::size(list)))];
  }

  std::mt19937 m_random;
};

}  // namespace kelvarin::jit

// The expression library that native code stands in for, set up as the product does: the judge of
// every result.
#pragma once

#include <array>
#include <optional>
#include <string>

#include <muParser.h>

namespace kelvarin::jit {

class LibraryParser {
 public:
  static constexpr std::array kVariables = {"a", "b", "c", "d", "sum"};

  LibraryParser();

  // False when the library refuses the expression or finds several results.
  bool setExpression(const std::string& expression);
  double evaluate(const double* values);

 private:
  std::array<double, kVariables.size()> m_values = {};
  mu::Parser m_parser;
};

}  // namespace kelvarin::jit

// The String back-end's functions of one number that its library brings: `sin`, `sqrt`, `ln`.
//
// They take a text or an array for 0. That stays, but is noted, so that the user hears of it.
// Errors: throws what the library throws.
#pragma once

#include <string>

#include <mpParser.h>

#include "expression/backends/variable_store.h"

namespace kelvarin {

// Outlives the functions that note in it.
class NonNumberWatch {
 public:
  // `variables` knows the number of the row.
  explicit NonNumberWatch(const VariableStore& variables) : m_variables(variables) {}

  void note(const mup::ICallback& function);

  long long count() const { return m_count; }
  // Of the first one.
  const std::string& function() const { return m_function; }
  int bytePosition() const { return m_bytePosition; }
  double row() const { return m_row; }

 private:
  const VariableStore& m_variables;
  long long m_count = 0;
  std::string m_function;
  int m_bytePosition = -1;
  double m_row = 0.0;
};

// Puts functions that note in `watch` in place of the library's.
void addNumericFunctions(mup::ParserX& parser, NonNumberWatch& watch);

}  // namespace kelvarin

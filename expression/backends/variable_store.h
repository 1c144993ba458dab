// The current values of one evaluator's variables, at addresses that do not change while
// expressions are bound to them.
//
// Filled by the evaluator's row binding, read by every back-end. The row number `_n` is the first
// number.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include <QString>

#include "base/null_number.h"

namespace kelvarin {

// UTF-8 bytes that live until the next row.
struct TextCell {
  std::string_view bytes;
  bool isNull = true;
};

struct StoredVariable {
  QString name;
  bool isText = false;
  std::size_t index = 0;  // in numbers() or texts()
};

class VariableStore {
 public:
  // `offersRowNumber`: `_n` is a variable of expressions too.
  void reset(bool offersRowNumber) {
    m_variables.clear();
    m_rowNumber = 0.0;
    m_numbers.assign(1, 0.0);
    m_texts.clear();
    if (offersRowNumber) {
      m_variables.push_back({QStringLiteral("_n"), false, 0});
    }
  }
  // Before anything is bound: addresses change while variables are added. Returns the index.
  std::size_t addNumber() {
    m_numbers.push_back(kNullNumber);
    return m_numbers.size() - 1;
  }
  std::size_t addText() {
    m_texts.push_back({});
    return m_texts.size() - 1;
  }
  // Lets expressions see the value at the index. Each name at most once.
  void name(const StoredVariable& variable) { m_variables.push_back(variable); }

  // Beyond those of numbers and of texts.
  std::size_t endOfIndices() const { return std::max(m_numbers.size(), m_texts.size()); }

  const std::vector<StoredVariable>& variables() const { return m_variables; }
  double* numbers() { return m_numbers.data(); }
  const double* numbers() const { return m_numbers.data(); }
  TextCell& text(std::size_t index) { return m_texts[index]; }
  const TextCell& text(std::size_t index) const { return m_texts[index]; }

  double rowNumber() const { return m_rowNumber; }
  void advanceRows(double count) { m_rowNumber += count; }
  // Lets expressions see the number of the row that is being loaded.
  void loadRowNumber() { m_numbers[0] = m_rowNumber; }

 private:
  std::vector<StoredVariable> m_variables;
  double m_rowNumber = 0.0;
  std::vector<double> m_numbers{0.0};
  std::vector<TextCell> m_texts;
};

}  // namespace kelvarin

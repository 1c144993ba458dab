// Writes the results of expressions in the form of their output columns.
//
// A number or key is stored in the output's own cell, a text in a buffer that lives until the next
// row.
#pragma once

#include <bit>
#include <cstdint>

#include "expression/backends/compiled_expression.h"
#include "expression/evaluator/compiled_output.h"
#include "expression/evaluator/expression_value.h"
#include "expression/evaluator/number_text.h"
#include "expression/evaluator/variables.h"
#include "host/contract/row_buffer.h"

namespace kelvarin {

// Where the result of one output goes.
struct ResultSlot {
  const CompiledOutput* output = nullptr;
  alignas(double) unsigned char cell[sizeof(double)] = {};
  unsigned char** textTarget = nullptr;  // receives the pointer to a text's bytes
  ExpressionValue value;                 // for ResultUse::anyValue
  bool wasTextCondition = false;         // for ResultUse::truth
  long long failureCount = 0;            // evaluations that did not stop the run
};

class ResultWriter {
 public:
  enum class Outcome { ok, textForNumber, noKey };

  // Invalidates the texts of the last row.
  void startRow() {
    if (!m_texts.isEmpty()) {
      m_texts.reset();
    }
  }
  Outcome write(ResultSlot& slot, const EvaluatedValue& value, const KeyCast& keyCast);
  static void writeNull(ResultSlot& slot);

 private:
  static Outcome writeNumber(ResultSlot& slot, const EvaluatedValue& value, const KeyCast& keyCast);
  void writeText(ResultSlot& slot, const EvaluatedValue& value);

  static constexpr int kFirstTextCapacity = 4096;

  RowBuffer m_texts{kFirstTextCapacity};
  ShortestNumber m_printed;
};

// Zero, null and the empty text are false; all else is true.
bool isTrueValue(const EvaluatedValue& value);
// Without a branch, which would be guessed wrong on the rows of a filter: with the sign as the
// lowest bit, the zeros are 0 and 1, and null is the largest number.
inline bool isTrueNumber(double number) {
  return std::rotl(std::bit_cast<std::uint64_t>(number), 1) - 2 < kNullNumberBits - 2;
}

}  // namespace kelvarin

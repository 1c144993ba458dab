// Writes the results of expressions in the form of their output columns.
//
// A number or key is stored in the output's own cell, a text in a buffer that lives until the next
// row. Threads: one.
#pragma once

#include <memory>

#include <QString>

#include "expression/backends/compiled_expression.h"
#include "expression/evaluator/expression_evaluator.h"
#include "expression/evaluator/number_text.h"
#include "expression/evaluator/variables.h"
#include "host/contract/row_buffer.h"

namespace kelvarin {

struct ExpressionOutput {
  QString name;
  QString text;  // as the user wrote it
  MetaTypeColumn meta = MetaTypeColumn::number;
  ResultUse use = ResultUse::column;
  std::unique_ptr<CompiledExpression> expression;
  alignas(double) unsigned char cell[sizeof(double)] = {};
  unsigned char** textTarget = nullptr;  // receives the pointer to a text's bytes
  ExpressionValue value;                 // for ResultUse::anyValue
  bool wasTextCondition = false;         // for ResultUse::truth
};

inline bool isNumberMeta(MetaTypeColumn meta) {
  return meta == MetaTypeColumn::number || meta == MetaTypeColumn::key;
}

class ResultWriter {
 public:
  enum class Outcome { ok, textForNumber, noKey };

  // Invalidates the texts of the last row.
  void startRow() {
    if (!m_texts.isEmpty()) {
      m_texts.reset();
    }
  }
  Outcome write(ExpressionOutput& output, const EvaluatedValue& value, const KeyCast& keyCast);
  static void writeNull(ExpressionOutput& output);

 private:
  static Outcome writeNumber(ExpressionOutput& output, const EvaluatedValue& value,
                             const KeyCast& keyCast);
  void writeText(ExpressionOutput& output, const EvaluatedValue& value);

  static constexpr int kFirstTextMemory = 4096;

  RowBuffer m_texts{kFirstTextMemory};
  ShortestNumber m_printed;
};

// Zero, null and the empty text are false; all else is true.
bool isTrueValue(const EvaluatedValue& value);
// Without a branch, which would be guessed wrong on the rows of a filter.
inline bool isTrueNumber(double number) {
  return static_cast<bool>(static_cast<int>(number != 0.0) &
                           static_cast<int>(!isNullNumber(number)));
}

}  // namespace kelvarin

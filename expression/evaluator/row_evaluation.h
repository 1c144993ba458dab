// Evaluates the expressions of one action row by row.
//
// Part of ExpressionEvaluator. Order of calls: start() when the last output has been compiled, then
// for every row loadRow (or values by hand and startRow), evaluate or evaluateTruth for every
// output, advanceRow.
// Errors: RowOutcome and lastFailure(); nothing is logged and nothing throws.
#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "expression/errors/expression_error.h"
#include "expression/evaluator/expression_set.h"
#include "expression/evaluator/result_writer.h"

namespace kelvarin {

// What became of one step of one row. `failed`: the result is missing and the run goes on; `stop`:
// lastFailure() says why the run must stop.
enum class RowOutcome : unsigned char { ok, failed, stop };

// Why a row failed.
struct RowFailure {
  enum class Kind { evaluation, keyCast, nullKey };
  Kind kind = Kind::evaluation;
  QString name;           // of the output, or of the variable for nullKey
  ExpressionError error;  // for evaluation
  BackendKind backend = BackendKind::string;
  double value = 0.0;  // for keyCast
  int output = -1;     // its index; -1 for nullKey
  double row = -1.0;   // its number; -1 before any failure
};

// Failed evaluations that did not stop the run.
struct FailureCount {
  long long count = 0;
  QString firstName;
  QString firstMessage;
  double firstRow = 0.0;
};

// Gets the evaluations that fail and do not stop the run.
class FailureListener {
 public:
  virtual ~FailureListener() = default;
  virtual void evaluationFailed(const RowFailure& failure, const OneRow& row) = 0;
};

class RowEvaluation {
 public:
  explicit RowEvaluation(ExpressionSet& expressions)
      : m_expressions(expressions), m_variables(expressions.variables()) {}
  RowEvaluation(const RowEvaluation&) = delete;
  RowEvaluation& operator=(const RowEvaluation&) = delete;

  void clear();
  // Makes the cells of all results; null values are in them.
  void start();

  // Null: nobody listens. Until clear(); values that are set by hand are no rows for it.
  void setFailureListener(FailureListener* listener) { m_listener = listener; }

  // Since start(), until clear().
  bool isStarted() const { return !m_slots.empty(); }

  RowOutcome loadRow(const OneRow& row);
  // The row's next element: vectors change to their next column, results are computed anew, and
  // texts made for earlier elements stay.
  RowOutcome loadElement(const OneRow& row, int element);
  // Replaces loadRow() where the values were set by hand.
  void startRow();

  // Evaluates into the output's result cell, or its target when it is a text.
  RowOutcome evaluate(int output) {
    const DirectCall& direct = m_directCalls[static_cast<std::size_t>(output)];
    if (direct.call.function == nullptr) {
      return evaluateAnyValue(output);
    }
    if (!direct.call(direct.result)) [[unlikely]] {
      return failToEvaluate(output);
    }
    return RowOutcome::ok;
  }
  // The truth of an output compiled for it: false for zero, null and empty or null text; true for
  // all else.
  RowOutcome evaluateTruth(int output, bool& isTrue);

  // Adds one to the row number.
  void advanceRow() { m_variables.advanceRows(1.0); }
  void advanceRows(std::size_t count) { m_variables.advanceRows(static_cast<double>(count)); }
  // A row that is counted and not evaluated, as in sampling.
  void passRow();
  // Counted from 0; of the row that is loaded next once advanceRow() was called.
  double rowNumber() const { return m_variables.rowNumber(); }

  // So many values were no numbers or no dates that batches, which end at each, take longer.
  bool shouldGoRowByRow() const {
    constexpr long long kMaxRefused = 100;
    return m_expressions.binding().refusedCount() > kMaxRefused;
  }

  const RowFailure& lastFailure() const { return m_lastFailure; }
  const FailureCount& failures() const { return m_failures; }
  // Evaluations of the output that failed and did not stop the run.
  long long failureCount(int output) const {
    return m_slots[static_cast<std::size_t>(output)].failureCount;
  }

  // What the outputs of each element are called in messages, element by element; without it they
  // have their own names.
  void nameElements(const QStringList& names) { m_elementNames = names; }

  // The bytes of the current result of a number or key output, at the same address until clear().
  unsigned char* resultCell(int output) { return slot(output).cell; }
  // Where evaluate() stores the pointer to a text output's bytes, which live until the next
  // loadRow().
  void setTextTarget(int output, unsigned char** target) { slot(output).textTarget = target; }
  // The result of the last evaluate() of an output compiled for anyValue.
  const ExpressionValue& value(int output) const {
    return m_slots[static_cast<std::size_t>(output)].value;
  }

  // Every variable, for a step debugger: the inputs in their order, each element of a vector, then
  // `_n`, `_now` and `_nowS` where they are offered. The same for all rows of a run.
  std::vector<ShownVariable> shownVariables(const OneRow& columns) const;
  // Replaces `values` by those that `variables` have in the row that was loaded last (or passed),
  // which is `row`. A variable that an expression assigned to has the value of the engine that
  // evaluated it. A row that failed, at loading even, can be shown, too.
  void showValues(const OneRow& row, const std::vector<ShownVariable>& variables,
                  std::vector<ExpressionValue>& values) const;

  // What the user should know at the end of a run about values that were no numbers and about texts
  // in functions of numbers.
  QStringList closingWarnings() const;

 private:
  // Of a number column or a condition on an engine of numbers, else empty.
  struct DirectCall {
    NumberCall call;
    double* result = nullptr;  // in the output's cell
  };

  static DirectCall directCallOf(ResultSlot& slot);
  ResultSlot& slot(int output) { return m_slots[static_cast<std::size_t>(output)]; }
  RowOutcome evaluateAnyValue(int output);
  RowOutcome failToEvaluate(int output);
  RowOutcome fail(int output, const ExpressionError& error);
  RowOutcome failToCast(int output, double number);
  RowFailure failureOf(int output, RowFailure::Kind kind) const;
  QString nameOf(int output) const;
  int outputsEvaluated() const;
  void takeAssignedValues(const std::vector<ShownVariable>& variables,
                          std::vector<ExpressionValue>& values) const;

  ExpressionSet& m_expressions;
  VariableStore& m_variables;             // of the expressions
  std::vector<DirectCall> m_directCalls;  // one an output
  std::vector<ResultSlot> m_slots;        // one an output
  bool m_hasStringOutput = false;
  ResultWriter m_writer;

  FailureListener* m_listener = nullptr;
  const OneRow* m_row = nullptr;  // the current one; null where values were set by hand
  int m_element = 0;              // of the vectors in the current row
  QStringList m_elementNames;     // of the outputs, element by element; may be empty

  RowFailure m_lastFailure;
  FailureCount m_failures;
};

}  // namespace kelvarin

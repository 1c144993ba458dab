// Evaluates the expressions of one action: binds its variables to columns, picks and compiles a
// back-end for each expression at the first row, then loads and evaluates row by row.
//
// Used by every expression action, the block filter of the columnar reader and `kelvarin eval`.
// Order of calls: configure, prepareDateContext, bind (or setNumber and setText by hand), compile
// for every output, then for every row loadRow, evaluate or evaluateTruth for every output,
// advanceRow. Threads: one.  Errors: statuses and RowOutcome; nothing is logged and nothing throws.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/errors/backend_kind.h"
#include "expression/backends/compiled_expression.h"
#include "expression/backends/variable_store.h"
#include "expression/dates/date_status.h"
#include "expression/errors/expression_error.h"
#include "expression/evaluator/column_evaluation.h"
#include "expression/evaluator/variables.h"
#include "host/contract/global_parameters.h"
#include "host/contract/one_row.h"

namespace kelvarin {

// What became of one step of one row. `failed`: the result is missing and the run goes on; `stop`:
// lastFailure() says why the run must stop.
enum class RowOutcome : unsigned char { ok, failed, stop };

// What the result of an expression is for.
enum class ResultUse {
  column,   // a value of the output's meta
  truth,    // a condition; see evaluateTruth()
  anyValue  // whatever type it has; see value()
};

// Why a row failed.
struct RowFailure {
  enum class Kind { evaluation, keyCast, nullKey };
  Kind kind = Kind::evaluation;
  QString name;           // of the output, or of the variable for nullKey
  ExpressionError error;  // for evaluation
  BackendKind backend = BackendKind::string;
  double value = 0.0;  // for keyCast
  int output = -1;     // its index; -1 for nullKey
};

// A result with the type it came with.
struct ExpressionValue {
  enum class Type { number, boolean, text };
  Type type = Type::number;
  double number = kNullNumber;  // 1 or 0 for a boolean
  QString text;                 // null for the null text
};

struct ExpressionOutput;

class ExpressionEvaluator {
 public:
  ExpressionEvaluator();
  ~ExpressionEvaluator();
  ExpressionEvaluator(const ExpressionEvaluator&) = delete;
  ExpressionEvaluator& operator=(const ExpressionEvaluator&) = delete;

  // Forgets everything that configure() and later calls built.
  void clear();

  // Starts a run. `isObserved`: a step debugger is attached, so every expression takes the String
  // back-end. `parameters` may be null; it outlives the evaluator's use.
  void configure(const EvaluationOptions& options, const std::vector<InputVariable>& inputs,
                 const GlobalParameters* parameters, bool isObserved);
  // Lets the back-ends be tried from this one on; without it the output's meta and the options
  // decide. A back-end that refuses an expression is then an error, never a fallback.
  void requireBackend(BackendKind kind);

  // Seeds the random generators, and fixes reference time and date format where the expressions
  // need them.
  DateStatus prepareDateContext(const QStringList& expressions);
  // What to do about a reference time that cannot be parsed.
  QString referenceTimeAdvice() const;
  // What to warn about when a date format is needed and looks like another pattern language's.
  QString dateFormatAdvice() const;

  // Finds the columns of every variable; `expand` replaces graph parameters in their names. The
  // error is the text to log: an unknown column, or columns of one variable that differ in type.
  // `elementCount`: so many columns has each variable that is a vector.
  Status<QString> bind(const OneRow& columns, const std::function<QString(const QString&)>& expand,
                       int elementCount = 1);

  // Adds an output.
  Status<ExpressionError> compile(const OutputVariable& output, ResultUse use = ResultUse::column);
  int outputCount() const;
  BackendKind backend(int output) const;

  // Compiles as compile() does and evaluates once with the variables' samples, as the check of an
  // editor. Gives the text to show, empty when nothing is wrong; lastFailure() has the error, if the
  // expression failed.
  QString check(const OutputVariable& output, ResultUse use = ResultUse::column);

  // What the last check() found that is no error.
  const QStringList& checkWarnings() const;

  RowOutcome loadRow(const OneRow& row);
  // The row's next element: vectors change to their next column, results are computed anew, and
  // texts made for earlier elements stay.
  RowOutcome loadElement(const OneRow& row, int element);
  // Evaluates into the output's result cell, or its target when it is a text.
  RowOutcome evaluate(int output) {
    const ShortWay& way = m_shortWays[static_cast<std::size_t>(output)];
    if (way.call.function == nullptr) {
      return evaluateAnyValue(output);
    }
    if (!way.call(way.result)) [[unlikely]] {
      return failToEvaluate(output);
    }
    return RowOutcome::ok;
  }
  // The truth of an output compiled for it: false for zero, null and empty or null text; true for
  // all else.
  RowOutcome evaluateTruth(int output, bool& isTrue);
  // Evaluates what can be for the row to be loaded next and as many of those after it as it gives,
  // with the results and failures that loading and evaluating them one by one would have. 0: there
  // are no such rows, or it does not pay.
  std::size_t evaluateAhead(const RowsAhead& rows);
  // False when no output can be evaluated so, which then holds for all rows to come.
  bool canEvaluateAhead() const;
  // Results of the rows of the last evaluateAhead(), the same until the next one.
  ColumnResults resultsAhead(int output);
  // The rows evaluated ahead must be loaded nevertheless, since some outputs are evaluated row by
  // row, or loading has effects.
  bool mustLoadRows() const;
  // Adds one to the row number.
  void advanceRow() { m_variables->advanceRows(1.0); }
  // The same for rows whose results were taken from resultsAhead().
  void advanceRows(std::size_t count) { m_variables->advanceRows(static_cast<double>(count)); }
  // Counted from 0; the value of `_n`.
  double rowNumber() const { return m_variables->rowNumber(); }
  const RowFailure& lastFailure() const;

  // What the outputs of each element are called in messages, element by element; without it they
  // have their own names.
  void nameElements(const QStringList& names);

  // The bytes of the current result of a number or key output, at the same place for the whole run.
  unsigned char* resultCell(int output);
  // Where evaluate() stores the pointer to a text output's bytes, which live until the next
  // loadRow().
  void setTextTarget(int output, unsigned char** slot);
  // The result of the last evaluate() of an output compiled for anyValue.
  const ExpressionValue& value(int output) const;

  // Values by hand, for callers without rows. The index is the variable's place in the list given
  // to configure().
  void setNumber(int variable, double value);
  void setText(int variable, const QString& value);  // a null QString is the null text
  void startRow();  // takes the place of loadRow() after values were set

  // A variable's value in the current row as the step debugger shows it.
  QString displayText(int variable) const;

  // What the user should know at the end of a run: values that were no numbers, texts in functions
  // of numbers, and rows that failed, with a text of messages.h about what became of those.
  QStringList closingWarnings(const char* failedRows) const;
  QStringList closingWarnings() const;

 private:
  struct State;
  // Of a number column or a condition on a back-end of numbers, else empty.
  struct ShortWay {
    NumberCall call;
    double* result = nullptr;  // in the output's cell
  };

  static ShortWay shortWayOf(ExpressionOutput& output);
  RowOutcome evaluateAnyValue(int output);
  RowOutcome failToEvaluate(int output);

  std::unique_ptr<State> m_state;
  VariableStore* m_variables;  // of the state
  std::vector<ShortWay> m_shortWays;  // one an output
};

}  // namespace kelvarin

// Evaluates the block filter: whether a block may have rows that the user wants.
//
// The variables are the summaries of a block's descriptor: maximum, minimum and has-null of each
// column, and the numbers of its first and last row. A block is passed over only when the
// expression is false; where it has no value or fails, the block is read. So it is where a bound
// says nothing about the values as the expression sees them: numbers seen as texts and dates in
// a format like dd.MM.yyyy have another order than their column.
// Used by ColumnarRead: compile() once, bindTo() for every file, then wantsBlock().
// Threads: one at a time: the engine's until the reading thread begins, then that one.
// Errors: texts to log.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "columnar/actions/block_filter.h"
#include "columnar/reader/block_scan.h"
#include "expression/dates/date_context.h"
#include "expression/evaluator/expression_evaluator.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class BlockFilterEvaluation {
 public:
  explicit BlockFilterEvaluation(const BlockFilter& filter) : m_filter(filter) {}

  // A check tries the expression with the variables' samples; otherwise it is compiled. `warning`
  // is set when the user should know something.
  Status<QString> compile(const ActionItem& action, QString& warning);
  // Where in the expression compile() failed, and what may have been meant; empty when it failed at
  // something else.
  QStringList explanations() const;
  // Finds the variables' columns; the error is about one that the file lacks or has otherwise.
  Status<QString> bindTo(const GelFile& file);
  bool wantsBlock(const GelFile& file, const BlockInfo& block);

 private:
  // A bound of a column: none, a number, or UTF-8.
  using Bound = std::variant<std::monostate, double, std::string>;
  struct Summary {
    bool hasNull = false;
    Bound low;
    Bound high;
    // Values may lie outside the bounds: one was cut, or is no text, or some values are NaN.
    bool isUnknown = false;
  };

  // Replaces the graph's parameters in the settings.
  void expandNames(const ActionItem& action);
  std::vector<InputVariable> inputs() const;
  static bool readStatistics(const GelFile& file, const BlockInfo& block, std::size_t column,
                          Summary& summary);
  // Whether the bounds of a column are those of what the variable makes of its values.
  bool holds(const BlockVariable& variable, const Summary& summary) const;
  // False when a bound is no date, though its variable is one.
  bool setBound(int input, const BlockVariable& variable, const Bound& bound);
  // False when a summary cannot be used.
  bool loadVariables(const GelFile& file, const BlockInfo& block);

  BlockFilter m_filter;
  std::vector<std::size_t> m_columns;  // of the variables in the current file
  ExpressionError m_error;  // of compile(); without a message when the expression is right
  ExpressionEvaluator m_evaluator;
  DateContext m_dates;
};

}  // namespace kelvarin

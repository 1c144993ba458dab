// Evaluates the block filter: whether a block may have rows that the user wants.
//
// The variables are the statistics in a block's descriptor: maximum, minimum and has-null of each
// column, and the numbers of its first and last row. A block is skipped only when the expression is
// false. It is read when the expression has no value or fails, and when a bound is useless because
// the expression sees the values in another order, as numbers seen as texts and dates in a format
// like dd.MM.yyyy.
// Used by ColumnarRead: compile() once, bindTo() for every file, then wantsBlock(). An editor shows
// the values of the variables, too.
// Threads: the engine's until the reading thread starts, then that one.
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

  // A check evaluates the expression with the variables' samples; otherwise it is compiled.
  // `warning` is a text for the user, or empty.
  Status<QString> compile(const ActionItem& action, QString& warning);
  // Where in the expression compile() failed, and what may have been meant. Empty when the
  // expression is not the cause.
  QStringList explanations() const;
  // Finds the variables' columns. The error names one that is missing or has the wrong type.
  Status<QString> bindTo(const GelFile& file);
  bool wantsBlock(const GelFile& file, const BlockInfo& block);

  // Of the expression, as it names them.
  QStringList variableNames() const;
  // In the order of the names; none where a statistics of the block cannot be used.
  std::vector<ExpressionValue> variableValues(const GelFile& file, const BlockInfo& block);

 private:
  // A bound of a column: none, a number, or UTF-8.
  using Bound = std::variant<std::monostate, double, std::string>;
  struct BlockStatistics {
    bool hasNull = false;
    Bound low;
    Bound high;
    // The bounds are unreliable: one was cut or is no UTF-8, or some values are NaN.
    bool isUnknown = false;
  };

  // Replaces the graph's parameters in the settings.
  void expandNames(const ActionItem& action);
  static bool readStatistics(const GelFile& file, const BlockInfo& block, std::size_t column,
                             BlockStatistics& statistics);
  // Whether the bounds of the column are also those of the values that the variable makes of it.
  bool holds(const BlockVariable& variable, const BlockStatistics& statistics) const;
  // False when the bound of a date variable is no date.
  bool setBound(int input, const BlockVariable& variable, const Bound& bound);
  // False when a statistics cannot be used.
  bool loadVariables(const GelFile& file, const BlockInfo& block);

  BlockFilter m_filter;
  std::vector<std::size_t> m_columns;  // of the variables in the current file
  ExpressionError m_error;  // of compile(); without a message when the expression is right
  ExpressionEvaluator m_evaluator;
  DateContext m_dates;
};

}  // namespace kelvarin

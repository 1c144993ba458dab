// The graph that computes expressions: the actions Calculator and FilterRows, or one of them,
// between a source and a sink.
//
// Used by: compiled_expressions.h.
#pragma once

#include <optional>
#include <vector>

#include "library/runs/graph_text.h"
#include "library/runs/stream_source.h"

namespace kelvarin {

struct ExpressionSettings {
  struct Output {
    QString name;
    QString expression;
    std::optional<MetaTypeColumn> type;  // that of the result where there is none
  };
  struct Setting {
    QString name;
    QString value;
  };
  std::vector<Output> outputs;
  QString condition;  // empty: all rows stay
  std::vector<Setting> settings;
  InputSettings input;

  // Null where the setting is not given.
  const QString* valueOf(const QString& setting) const;
};

// An attribute of either action.
bool isExpressionSetting(const QString& name);
// Whether a condition with these settings may end with the first row that it is false for.
bool truncates(const ExpressionSettings& settings);

class ExpressionGraph {
 public:
  // Both live as long as this object.
  ExpressionGraph(const ExpressionSettings& settings, const TableColumns& input)
      : m_settings(settings), m_input(input) {}

  // With a source, which is the first action, and a sink.
  Outcome<Graph> whole(const ActionCatalogue& catalogue) const;
  // The Calculator alone.
  Outcome<Graph> calculator(const ActionCatalogue& catalogue) const;

  // Of the input, the columns that no expression names.
  std::vector<bool> unreadColumns() const;
  // The actions between source and sink.
  int transformCount() const;
  // Whether `_n` is the row's number: a column of that name is what it means otherwise.
  bool hasRowNumber(bool isCondition) const;

 private:
  QStringList outputExpressions() const;
  void addSettings(GraphText& graph, bool isCondition) const;
  void addVariables(GraphText& graph, const QStringList& expressions,
                    const TableColumns& columns) const;
  void addCalculator(GraphText& graph) const;
  void addFilter(GraphText& graph) const;
  TableColumns columnsOfCondition() const;

  const ExpressionSettings& m_settings;
  const TableColumns& m_input;
};

}  // namespace kelvarin

// What a run did, as a tree: a row for each action, and below it one for each output, for the
// blocks that were read and for each file that was written.
//
// Used by: run_report_panel.cpp.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QAbstractItemModel>

#include "gui/document/action_state.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class RunReportModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column {
    actionColumn,
    stateColumn,
    rowsInColumn,
    rowsOutColumn,
    timeColumn,
    speedColumn,
    columnCountOfReport
  };
  enum Role {
    sortRole = Qt::UserRole,  // numbers as numbers
    fileRole,                 // the path of a file that was written; else empty
    actionRole                // the name of the action that the row belongs to
  };

  using QAbstractItemModel::QAbstractItemModel;

  void setResult(const RunResult& result);
  void clear();
  // A table with tabs between the cells, what belongs to an action indented below it.
  QString asText() const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Detail {
    QString text;
    QString file;
  };
  struct Row {
    QString name;
    QString typeName;
    QString state;
    long long rowsIn = -1;  // -1: it has no such pins
    long long rowsOut = -1;
    double seconds = -1.0;
    QString message;  // its first error or warning
    std::vector<Detail> details;
  };

  static Row rowOf(const ActionResult& action, const ActionState& state);
  static QString wordFor(const ActionState& state);
  static std::vector<Detail> detailsOf(const ActionResult& action);
  static QString textOf(const OutputReport& output);
  static double rowsPerSecond(const Row& row);
  QString cell(const Row& row, int column) const;
  QVariant sortKey(const Row& row, int column) const;

  std::vector<Row> m_rows;
};

}  // namespace kelvarin

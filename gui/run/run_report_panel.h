// What the last run did: for every action rows, time, engines and what forced them, nulls, blocks
// and files.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "gui/run/graph_run.h"

class QAction;
class QLabel;
class QSortFilterProxyModel;
class QStackedWidget;
class QToolButton;
class QTreeView;

namespace kelvarin {

class RunReportModel;

class RunReportPanel : public QWidget {
  Q_OBJECT

 public:
  explicit RunReportPanel(GraphRun& run, QWidget* parent = nullptr);

 signals:
  void actionWanted(const QString& name);

 private:
  QWidget* newHead();
  void makeTree();
  void showResult();
  void copy() const;
  void chooseAction(const QModelIndex& index);
  void openFolder() const;
  void enableOpenFolder();
  QString currentFile() const;

  GraphRun& m_run;
  RunReportModel* m_model;
  QSortFilterProxyModel* m_sorted;
  QTreeView* m_tree;
  QLabel* m_summary;
  QToolButton* m_copy;
  QToolButton* m_openFolder;
  QAction* m_openFolderHere;  // in the menu of a file
  QStackedWidget* m_pages;
};

// "ok, 19,811 rows, 0.04 s": how a run ended, with the rows that its sources gave.
QString summaryOf(const RunResult& result);

}  // namespace kelvarin

// The parameters of the graph as a table: name, value, and what uses them.
//
// Threads: the user-interface thread.
#pragma once

#include <QDialog>

#include "gui/document/graph_commands.h"

class QTableView;

namespace kelvarin {

class InfoLine;
class ParametersModel;

class ParametersDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ParametersDialog(GraphCommands& commands, QWidget* parent = nullptr);

 private:
  void makeTable();
  QLayout* newButtons();
  void edit(const QModelIndex& cell);
  void removeCurrent();
  void validate();
  void apply();

  GraphCommands& m_commands;
  ParametersModel* m_model;
  QTableView* m_table;
  InfoLine* m_fault;
  InfoLine* m_missing;
  QPushButton* m_remove;
  QPushButton* m_apply = nullptr;
};

}  // namespace kelvarin

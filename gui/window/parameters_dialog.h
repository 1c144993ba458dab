// The parameters of the graph as a table: name, value, and which actions use it.
//
// Threads: the user-interface thread.
#pragma once

#include <QDialog>

#include "gui/document/graph_commands.h"

class QTableWidget;

namespace kelvarin {

class InfoLine;

class ParametersDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ParametersDialog(GraphCommands& commands, QWidget* parent = nullptr);

 private:
  void addRow(const DrawnParameter& parameter);
  void removeCurrent();
  QList<DrawnParameter> typed() const;
  // Empty when the graph can have them.
  QString faultOf(const QList<DrawnParameter>& parameters) const;
  void validate();
  void apply();

  GraphCommands& m_commands;
  QTableWidget* m_table;
  InfoLine* m_fault;
  QPushButton* m_apply;
};

}  // namespace kelvarin

// What is shown in place of a graph that cannot be opened: its faults, each with its position in
// the file.
//
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QWidget>

#include "host/engine/graph_reader.h"

class QLabel;
class QTreeWidget;

namespace kelvarin {

class FaultPage : public QWidget {
  Q_OBJECT

 public:
  explicit FaultPage(QWidget* parent = nullptr);

  void setFaults(const QString& file, const std::vector<GraphError>& faults);

 signals:
  void reloadWanted();

 private:
  void copy();

  QLabel* m_title;
  QTreeWidget* m_faults;
};

}  // namespace kelvarin

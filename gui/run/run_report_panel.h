// What the last run did: for every action rows, time, engines and what forced them, nulls, blocks
// and files.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "gui/run/graph_run.h"

namespace kelvarin {

class RunReportPanel : public QWidget {
  Q_OBJECT

 public:
  explicit RunReportPanel(GraphRun& run, QWidget* parent = nullptr);

 signals:
  void actionWanted(const QString& name);
};

}  // namespace kelvarin

// Asks whether a run whose disk is full tries again or stops.
//
// Threads: the user-interface thread.
#pragma once

#include "gui/run/graph_run.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

class DiskQuestionLine : public InfoLine {
  Q_OBJECT

 public:
  // The run outlives it.
  explicit DiskQuestionLine(GraphRun& run, QWidget* parent = nullptr);

 private:
  void showQuestion();

  GraphRun& m_run;
};

}  // namespace kelvarin

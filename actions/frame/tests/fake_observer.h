// A step debugger that writes down what it is shown and stops after so many rows.
#pragma once

#include <vector>

#include "actions/frame/row_observer.h"

namespace kelvarin::testing {

class FakeObserver : public RowObserver {
 public:
  explicit FakeObserver(int rowsBeforeStop = 1000) : m_rowsLeft(rowsBeforeStop) {}

  struct Row {
    QStringList values;
    QStringList results;
  };

  QStringList labels;
  std::vector<Row> rows;

  void backendsChosen(const QStringList& chosen) override { labels = chosen; }
  void rowEvaluated(const QStringList& values, const QStringList& results) override {
    rows.push_back({values, results});
  }
  bool waitForStep() override { return --m_rowsLeft > 0; }

 private:
  int m_rowsLeft;
};

}  // namespace kelvarin::testing

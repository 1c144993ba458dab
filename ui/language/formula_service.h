// Checks and evaluates expressions beside the user-interface thread.
//
// A question replaces the ones before it; an answer to an old question is thrown away. An
// evaluation that does not come back within a second is left behind, and the service says so; at
// most one is left behind at a time. Nothing that reads files or waits is called.
// Threads: the user-interface thread; the answers come by signals on it.
#pragma once

#include <QObject>

#include "ui/language/bounded_worker.h"
#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"
#include "ui/language/part_evaluation.h"

namespace kelvarin {

class FormulaService : public QObject {
  Q_OBJECT

 public:
  explicit FormulaService(QObject* parent = nullptr);

  // The version under which the answer comes.
  quint64 ask(const Formula& formula);
  // About the part that begins at `start` and has `size` characters.
  quint64 askPart(const Formula& formula, qsizetype start, qsizetype size);
  // About all parts, in the formula's current row, else the first one, else with the samples.
  quint64 askParts(const Formula& formula);

 signals:
  void answered(const kelvarin::FormulaAnswer& answer);
  void partAnswered(const kelvarin::PartAnswer& answer);
  void partsAnswered(const kelvarin::PartValues& values);

 private:
  BoundedWorker m_worker;
  quint64 m_version = 0;
};

}  // namespace kelvarin

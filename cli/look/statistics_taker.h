// Statistics of all columns of a run's rows, computed beside the run.
//
// Rows are gathered into groups of batches. A column of a group is a task, and the next group waits
// for it: so each column sees its values in the order of the rows, on whatever thread that is.
// Used by: stats_command.cpp.
// Threads: those of RowTaker.
#pragma once

#include <memory>
#include <vector>

#include <QStringList>

#include "cli/look/column_statistics.h"
#include "cli/taken_rows.h"

namespace kelvarin {

class StatisticsTaker final : public RowTaker {
 public:
  // Values of a column that are counted exactly, where columns are few.
  static constexpr std::size_t kMaxDistinct = 64 * 1024;

  StatisticsTaker();
  ~StatisticsTaker() override;

  void begin(const OneRow& columns, TaskPool* tasks) override;
  bool take(const RowBatchPointer& batch) override;
  void end() override;

  const QStringList& names() const { return m_names; }
  std::size_t distinctBound() const { return m_distinctBound; }
  // One a column; after end().
  std::vector<ColumnSummary> summaries();

 private:
  class Task;

  void startGroup();
  void finishGroup();

  TaskPool* m_pool = nullptr;
  QStringList m_names;
  std::size_t m_distinctBound = kMaxDistinct;
  std::vector<std::unique_ptr<ColumnStatistics>> m_columns;
  std::vector<RowBatchPointer> m_group;  // being gathered
  std::size_t m_groupRows = 0;
  std::size_t m_groupBytes = 0;
  std::vector<RowBatchPointer> m_groupAtWork;
  std::vector<std::shared_ptr<Task>> m_tasks;  // on that
};

}  // namespace kelvarin

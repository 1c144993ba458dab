// A row group whose columns are being encoded, each as a task.
//
// Used by: RowGroupWriter.
// Threads: the engine's; tasks run on any.
#pragma once

#include <condition_variable>
#include <mutex>

#include "base/task_pool.h"
#include "host/tables/arrow_formats/row_group_writer.h"

namespace kelvarin {

class GroupEncoding {
 public:
  // Without a pool, encodes at once. `format` outlives it.
  GroupEncoding(std::unique_ptr<RowGroup> group, const RowGroupFormat& format, TaskPool* pool);
  // Columns that nobody has begun are left out.
  ~GroupEncoding();

  // Encodes what nobody has begun, waits for the rest, and hands out all columns.
  arrow::Status takeColumns(std::vector<std::unique_ptr<EncodedColumn>>& columns);
  std::size_t rowCount() const { return m_group->rowCount(); }

 private:
  class ColumnTask;

  void encode(std::size_t column);
  void waitForTasks();

  std::unique_ptr<RowGroup> m_group;
  const RowGroupFormat& m_format;
  std::vector<std::unique_ptr<EncodedColumn>> m_columns;
  std::vector<arrow::Status> m_outcomes;  // of each column
  std::vector<std::shared_ptr<ColumnTask>> m_tasks;

  std::mutex m_mutex;  // guards m_columnsLeft
  std::condition_variable m_isEncoded;
  std::size_t m_columnsLeft;
};

}  // namespace kelvarin

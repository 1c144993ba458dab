#include "host/tables/arrow_formats/group_encoding.h"

#include <exception>

namespace kelvarin {

// Who has claimed it runs it; until then, nothing of the encoding is needed.
class GroupEncoding::ColumnTask final : public PoolTask {
 public:
  ColumnTask(GroupEncoding& encoding, std::size_t column)
      : m_encoding(encoding), m_column(column) {}

  void run() override { m_encoding.encode(m_column); }

 private:
  GroupEncoding& m_encoding;
  std::size_t m_column;
};

GroupEncoding::GroupEncoding(std::unique_ptr<RowGroup> group, const RowGroupFormat& format,
                             TaskPool* pool)
    : m_group(std::move(group)),
      m_format(format),
      m_columns(m_group->columns().size()),
      m_outcomes(m_columns.size()),
      m_columnsLeft(m_columns.size()) {
  for (std::size_t column = 0; column < m_columns.size(); ++column) {
    if (pool == nullptr) {
      encode(column);
      continue;
    }
    m_tasks.push_back(std::make_shared<ColumnTask>(*this, column));
    pool->submit(m_tasks.back());
  }
}

GroupEncoding::~GroupEncoding() {
  for (const auto& task : m_tasks) {
    if (task->claim()) {
      const std::lock_guard lock(m_mutex);
      --m_columnsLeft;
    }
  }
  waitForTasks();
}

void GroupEncoding::encode(std::size_t column) {
  try {
    m_outcomes[column] = m_format.encode(*m_group, column, m_columns[column]);
  } catch (const std::exception& exception) {
    m_outcomes[column] = arrow::Status::IOError(exception.what());
  }
  const std::lock_guard lock(m_mutex);
  --m_columnsLeft;
  m_isEncoded.notify_one();
}

void GroupEncoding::waitForTasks() {
  std::unique_lock lock(m_mutex);
  m_isEncoded.wait(lock, [this] { return m_columnsLeft == 0; });
}

arrow::Status GroupEncoding::takeColumns(std::vector<std::unique_ptr<EncodedColumn>>& columns) {
  for (const auto& task : m_tasks) {
    if (task->claim()) {
      task->run();
    }
  }
  waitForTasks();
  for (const arrow::Status& outcome : m_outcomes) {
    ARROW_RETURN_NOT_OK(outcome);
  }
  columns = std::move(m_columns);
  return arrow::Status::OK();
}

}  // namespace kelvarin

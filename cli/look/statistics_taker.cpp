#include "cli/look/statistics_taker.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <span>

#include "base/task_pool.h"

namespace kelvarin {

namespace {

constexpr std::size_t kRowsInGroup = 64 * 1024;
constexpr std::size_t kBytesInGroup = 32 << 20;
// Of all columns together, so that tables of many columns take no more memory.
constexpr std::size_t kDistinctOfAll = 1 << 20;
constexpr std::size_t kFewestDistinct = 1024;

}  // namespace

class StatisticsTaker::Task final : public PoolTask {
 public:
  Task(ColumnStatistics& column, std::size_t index, std::span<const RowBatchPointer> batches)
      : m_column(column), m_index(index), m_batches(batches) {}

  void run() override {
    try {
      for (const RowBatchPointer& batch : m_batches) {
        m_column.add(*batch, m_index);
      }
    } catch (...) {
      m_exception = std::current_exception();
    }
    m_isDone = true;
    m_isDone.notify_all();
  }
  bool isDone() const { return m_isDone; }
  void wait() const { m_isDone.wait(false); }
  void rethrow() const {
    if (m_exception) {
      std::rethrow_exception(m_exception);
    }
  }

 private:
  ColumnStatistics& m_column;
  const std::size_t m_index;
  const std::span<const RowBatchPointer> m_batches;
  std::exception_ptr m_exception;
  std::atomic<bool> m_isDone{false};
};

StatisticsTaker::StatisticsTaker() = default;

StatisticsTaker::~StatisticsTaker() {
  for (const auto& task : m_tasks) {
    if (!task->claim()) {
      task->wait();
    }
  }
}

void StatisticsTaker::begin(const OneRow& columns, TaskPool* tasks) {
  m_pool = tasks;
  const auto count = static_cast<std::size_t>(columns.sz());
  m_distinctBound =
      std::clamp(kDistinctOfAll / std::max<std::size_t>(count, 1), kFewestDistinct, kMaxDistinct);
  for (int i = 0; i < columns.sz(); ++i) {
    m_names.append(columns.colName(i));
    m_columns.push_back(
        std::make_unique<ColumnStatistics>(columns.getMetaType(i), m_distinctBound));
  }
}

bool StatisticsTaker::take(const RowBatchPointer& batch) {
  m_group.push_back(batch);
  m_groupRows += batch->rowCount();
  m_groupBytes += batch->byteCount();
  if (m_groupRows >= kRowsInGroup || m_groupBytes >= kBytesInGroup) {
    startGroup();
  }
  return true;
}

void StatisticsTaker::end() {
  startGroup();
  finishGroup();
}

void StatisticsTaker::startGroup() {
  finishGroup();
  m_groupAtWork = std::exchange(m_group, {});
  m_groupRows = 0;
  m_groupBytes = 0;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    m_tasks.push_back(std::make_shared<Task>(*m_columns[i], i, m_groupAtWork));
    if (m_pool != nullptr) {
      m_pool->submit(m_tasks.back());
    }
  }
}

// Works on what nobody has begun.
void StatisticsTaker::finishGroup() {
  for (const auto& task : m_tasks) {
    if (task->claim()) {
      task->run();
    }
  }
  for (const auto& task : m_tasks) {
    while (!task->isDone() && m_pool->runOne()) {
    }
    task->wait();
  }
  for (const auto& task : std::exchange(m_tasks, {})) {
    task->rethrow();
  }
  m_groupAtWork.clear();
}

std::vector<ColumnSummary> StatisticsTaker::summaries() {
  std::vector<ColumnSummary> summaries;
  summaries.reserve(m_columns.size());
  for (const auto& column : m_columns) {
    summaries.push_back(column->summary());
  }
  return summaries;
}

}  // namespace kelvarin

#include "columnar/writer/block_encoder.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <system_error>

#include "columnar/writer/block_statistics.h"

namespace kelvarin {

namespace {

// A block with fewer values is encoded sooner than another thread is awake.
constexpr std::size_t kMinValuesForHelpers = 8192;

}  // namespace

// A block that is being encoded. Helpers that come late find that no column is left, and then touch
// nothing else.
struct BlockEncoder::Job {
  Job(const BlockValues& blockValues, unsigned char* blockDescriptor)
      : values(blockValues),
        descriptor(blockDescriptor),
        columnsLeft(static_cast<std::ptrdiff_t>(blockValues.columns.size())),
        columnsToDo(blockValues.columns.size()) {}

  const BlockValues& values;
  unsigned char* const descriptor;
  std::atomic<std::ptrdiff_t> columnsLeft;  // that nobody has begun; below 0 as well
  std::mutex mutex;                         // guards what follows
  std::condition_variable finished;
  std::size_t columnsToDo;
  std::exception_ptr exception;
};

class BlockEncoder::Helper final : public PoolTask {
 public:
  Helper(BlockEncoder& encoder, ThreadPermits& permits, std::shared_ptr<Job> job)
      : m_encoder(encoder), m_permits(permits), m_job(std::move(job)) {}

  // Without a permit there are others at work who will do it.
  void run() override {
    if (const ThreadPermits::Permit permit(m_permits, std::try_to_lock); permit.isHeld()) {
      m_encoder.encodeColumns(*m_job);
    }
  }

 private:
  BlockEncoder& m_encoder;
  ThreadPermits& m_permits;
  const std::shared_ptr<Job> m_job;
};

BlockEncoder::BlockEncoder(const TableLayout& layout, std::size_t firstColumn,
                           std::size_t columnCount, ThreadPermits& permits, TaskPool& helpers)
    : m_layout(layout),
      m_firstColumn(firstColumn),
      m_permits(permits),
      m_helpers(helpers),
      m_chunks(columnCount),
      m_textHistories(columnCount) {}

BlockEncoder::~BlockEncoder() = default;

void BlockEncoder::encode(const BlockValues& values, unsigned char* descriptor) {
  const auto job = std::make_shared<Job>(values, descriptor);
  callHelpers(job, values);
  encodeColumns(*job);
  std::unique_lock lock(job->mutex);
  job->finished.wait(lock, [&] { return job->columnsToDo == 0; });
  if (job->exception) {
    std::rethrow_exception(job->exception);
  }
}

void BlockEncoder::callHelpers(const std::shared_ptr<Job>& job, const BlockValues& values) {
  if (values.rows * values.columns.size() < kMinValuesForHelpers) {
    return;
  }
  const auto count =
      std::min(static_cast<std::size_t>(m_helpers.threadCount()), values.columns.size() - 1);
  try {
    for (std::size_t i = 0; i < count; ++i) {
      m_helpers.submit(std::make_shared<Helper>(*this, m_permits, job));
    }
  } catch (const std::system_error&) {
    // No thread can be started, and the worker's own does all.
  }
}

// The last columns are begun first: texts, which take longest.
void BlockEncoder::encodeColumns(Job& job) {
  std::size_t done = 0;
  std::exception_ptr exception;
  for (std::ptrdiff_t left; (left = job.columnsLeft.fetch_sub(1)) > 0; ++done) {
    try {
      auto encoder = takeEncoder();
      encodeColumn(job, static_cast<std::size_t>(left - 1), *encoder);
      giveBack(std::move(encoder));
    } catch (...) {
      exception = std::current_exception();
    }
  }
  if (done > 0) {
    const std::lock_guard lock(job.mutex);
    job.columnsToDo -= done;
    job.exception = exception ? exception : job.exception;
    job.finished.notify_all();
  }
}

void BlockEncoder::encodeColumn(const Job& job, std::size_t index, ChunkEncoder& encoder) {
  const std::size_t column = m_firstColumn + index;
  const GelColumn& about = m_layout.metadata.columns[column];
  const ColumnValues& stored = job.values.columns[index];
  const std::uint32_t rowsInBlock = m_layout.metadata.rowsInBlock;
  Chunk& chunk = m_chunks[index];
  chunk.bytes.clear();
  switch (about.type) {
    case GelType::key: {
      const std::span<const std::uint32_t> keys(stored.keys.get(), job.values.rows);
      m_layout.descriptors.writeStatistics(job.descriptor, column, statisticsOf(keys));
      chunk.valuesSize = rowsInBlock * static_cast<std::uint32_t>(sizeof(std::uint32_t));
      encoder.appendKeys(keys, about.storage, chunk.bytes);
      return;
    }
    case GelType::number: {
      const std::span<const std::uint64_t> numbers(stored.numbers.get(), job.values.rows);
      m_layout.descriptors.writeStatistics(job.descriptor, column, statisticsOf(numbers));
      chunk.valuesSize = rowsInBlock * static_cast<std::uint32_t>(sizeof(double));
      encoder.appendNumbers(numbers, chunk.bytes);
      return;
    }
    case GelType::text:
      return encodeTexts(job, index, encoder);
  }
}

void BlockEncoder::encodeTexts(const Job& job, std::size_t index, ChunkEncoder& encoder) {
  const ColumnValues& stored = job.values.columns[index];
  const TextValues texts{{stored.keys.get(), job.values.rows}, stored.bytes.bytes()};
  Chunk& chunk = m_chunks[index];
  chunk.valuesSize = static_cast<std::uint32_t>(texts.rawSize());
  encoder.appendTexts(texts, m_textHistories[index], chunk.bytes);
  const auto different = encoder.differentTexts();
  m_layout.descriptors.writeStatistics(
      job.descriptor, m_firstColumn + index,
      different.empty() ? statisticsOf(texts) : statisticsOf(different));
}

// An encoder keeps its buffers from block to block.
std::unique_ptr<ChunkEncoder> BlockEncoder::takeEncoder() {
  {
    const std::lock_guard lock(m_mutex);
    if (!m_idleEncoders.empty()) {
      auto encoder = std::move(m_idleEncoders.back());
      m_idleEncoders.pop_back();
      return encoder;
    }
  }
  return std::make_unique<ChunkEncoder>();
}

void BlockEncoder::giveBack(std::unique_ptr<ChunkEncoder> encoder) {
  const std::lock_guard lock(m_mutex);
  m_idleEncoders.push_back(std::move(encoder));
}

}  // namespace kelvarin

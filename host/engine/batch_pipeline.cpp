#include "host/engine/batch_pipeline.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <utility>

#include "host/contract/host_session.h"

namespace kelvarin {

namespace {

constexpr auto kBetweenLooks = std::chrono::milliseconds(20);
// For each thread: while one batch is worked on, the results of another one wait.
constexpr std::size_t kUnitsForAThread = 2;
constexpr std::size_t kBytesForAThread = 4 << 20;
constexpr std::size_t kResultBytesForAThread = 16 << 20;

}  // namespace

// One batch on its way through the chain.
class BatchPipeline::Task final : public PoolTask {
 public:
  explicit Task(BatchPipeline& pipeline)
      : m_pipeline(pipeline), m_mayWait(!pipeline.m_chain.source->hasUnitReady()) {}
  Task(BatchPipeline& pipeline, RowBatchPointer batch, BatchTrailPointer trail, long long firstRow)
      : m_pipeline(pipeline), m_firstRow(firstRow) {
    result->batch = std::move(batch);
    result->trail = std::move(trail);
    bytes = result->batch->byteCount();
  }

  void run() override {
    try {
      if (result->batch != nullptr || readUnit()) {
        work();
      }
    } catch (...) {
      result->exception = std::current_exception();
    }
    const std::lock_guard lock(m_pipeline.m_mutex);
    if (m_isReading) {  // an exception came before the next task could be armed
      m_pipeline.m_isReading = false;
    }
    m_pipeline.m_resultBytesAlive += m_bytesOfResult;
    m_pipeline.m_resultBytesAlive -= resultBytes;
    m_pipeline.m_bytesOfLastResult = resultBytes = m_bytesOfResult;
    m_pipeline.m_hasResult = true;
    isDone = true;
    m_pipeline.m_changed.notify_all();
  }
  // Asked by the pool, perhaps when the pipeline is gone.
  bool mayWait() const override { return m_mayWait; }

  // Written before isDone, which the pipeline's mutex guards.
  std::unique_ptr<Result> result = std::make_unique<Result>();
  bool isEnd = false;  // there was no unit
  std::atomic<bool> isDone{false};
  std::size_t bytes = 0;        // of what it was made of
  std::size_t resultBytes = 0;  // until it is done, those of an earlier one

 private:
  // False: there is none. The next one is read by another thread, while this one goes on.
  bool readUnit() {
    const CurrentAction current(m_pipeline.m_chain.sourceAction);
    m_isReading = true;
    result->unit = m_pipeline.m_chain.source->readUnit();
    std::shared_ptr<Task> following;
    {
      const std::lock_guard lock(m_pipeline.m_mutex);
      m_isReading = false;
      m_pipeline.m_isReading = false;
      isEnd = result->unit == nullptr;
      m_pipeline.m_isDry |= isEnd;
      bytes = isEnd ? 0 : result->unit->byteCount();
      m_pipeline.m_bytesAlive += bytes;
      following = m_pipeline.arm();
    }
    if (following != nullptr) {
      m_pipeline.m_pool.submit(std::move(following));
      m_pipeline.m_changed.notify_all();
    }
    return !isEnd;
  }

  void work() {
    Result& made = *result;
    const Chain& chain = m_pipeline.m_chain;
    if (made.unit != nullptr) {
      const CurrentAction current(chain.sourceAction);
      made.unit->parse();
      made.batch = made.unit->batch();
      if (made.batch == nullptr) {
        return;
      }
    }
    RowBatchPointer batch = made.batch;
    for (std::size_t i = 0; i < chain.stages.size() && batch != nullptr && batch->rowCount() > 0;
         ++i) {
      ++made.step;
      const CurrentAction current(chain.stageActions[i]);
      if (chain.stages[i]->processesWhole(*batch)) {
        made.stages.push_back(chain.stages[i]->process(*batch, i == 0 ? m_firstRow : -1));
      }
      if (made.stages.size() == i || made.stages.back().rowsDone < batch->rowCount()) {
        made.stages.clear();
        made.isWhole = false;
        return;
      }
      batch = made.stages.back().outputs[static_cast<std::size_t>(m_pipeline.m_outputPins[i])];
      m_bytesOfResult = batch == nullptr ? m_bytesOfResult : batch->byteCount();
    }
    if (chain.encoder != nullptr && batch != nullptr && batch->rowCount() > 0) {
      ++made.step;
      const CurrentAction current(chain.sinkAction);
      const bool isOfUnit = made.unit != nullptr && chain.stages.empty();
      made.encoded = chain.encoder->encodeAt(*batch, isOfUnit ? made.unit->expectedRow() : -1);
    }
  }

  BatchPipeline& m_pipeline;
  const bool m_mayWait = false;
  const long long m_firstRow = -1;
  bool m_isReading = false;
  std::size_t m_bytesOfResult = 0;
};

BatchPipeline::BatchPipeline(TaskPool& pool, Chain chain, std::vector<int> outputPins)
    : m_pool(pool), m_chain(std::move(chain)), m_outputPins(std::move(outputPins)) {}

BatchPipeline::~BatchPipeline() {
  std::unique_lock lock(m_mutex);
  m_isDry = true;
  for (const std::shared_ptr<Task>& task : m_window) {
    if (task->claim()) {
      task->isDone = true;
    }
  }
  m_changed.wait(lock, [this] {
    return std::all_of(m_window.begin(), m_window.end(),
                       [](const std::shared_ptr<Task>& task) { return task->isDone.load(); });
  });
}

std::size_t BatchPipeline::maxUnits() const {
  const auto threads = static_cast<std::size_t>(m_pool.threadCount()) + 1;
  const std::size_t units = m_hasResult ? kUnitsForAThread * threads + 1 : threads;
  if (m_chain.source == nullptr) {
    return units;
  }
  return std::min(units, static_cast<std::size_t>(std::max(1, m_chain.source->maxUnitsAhead())));
}

bool BatchPipeline::canArm() const {
  const auto threads = static_cast<std::size_t>(m_pool.threadCount()) + 1;
  return m_window.size() < maxUnits() &&
         (m_window.empty() || (m_bytesAlive < kBytesForAThread * threads &&
                               m_resultBytesAlive < kResultBytesForAThread * threads));
}

// With the mutex locked. Null: nothing is to be read now.
std::shared_ptr<BatchPipeline::Task> BatchPipeline::arm() {
  if (m_chain.source == nullptr || m_isReading || m_isDry || m_isHeld || !canArm()) {
    return nullptr;
  }
  m_isReading = true;
  ++m_armedCount;
  addToWindow(std::make_shared<Task>(*this));
  return m_window.back();
}

// With the mutex locked.
void BatchPipeline::addToWindow(std::shared_ptr<Task> task) {
  task->resultBytes = m_bytesOfLastResult;
  m_resultBytesAlive += task->resultBytes;
  m_window.push_back(std::move(task));
}

bool BatchPipeline::hasSpace() const {
  const std::lock_guard lock(m_mutex);
  return canArm();
}

bool BatchPipeline::isEmpty() const {
  const std::lock_guard lock(m_mutex);
  return m_window.empty();
}

void BatchPipeline::push(RowBatchPointer batch, BatchTrailPointer trail, long long firstRow) {
  auto task = std::make_shared<Task>(*this, std::move(batch), std::move(trail), firstRow);
  {
    const std::lock_guard lock(m_mutex);
    m_bytesAlive += task->bytes;
    addToWindow(task);
  }
  m_pool.submit(std::move(task));
}

void BatchPipeline::readOn() {
  const std::lock_guard lock(m_mutex);
  m_isDry = false;
}

void BatchPipeline::setHeld(bool isHeld) {
  const std::lock_guard lock(m_mutex);
  m_isHeld = isHeld;
}

// With the mutex locked. Until the task is done or another one can be begun; not for long.
void BatchPipeline::waitFor(const Task& task, std::size_t armedCount,
                            std::unique_lock<std::mutex>& lock) {
  const CurrentAction nobody(nullptr);
  const auto isOver = [&] { return task.isDone || m_armedCount != armedCount; };
  lock.unlock();
  const bool wasShort = m_wait.look(isOver);
  lock.lock();
  if (!wasShort) {
    m_changed.wait_for(lock, kBetweenLooks, isOver);
    m_wait.noteEnd();
  }
}

std::unique_ptr<BatchPipeline::Result> BatchPipeline::next(const std::function<bool()>& mayWait) {
  std::unique_lock lock(m_mutex);
  if (m_window.empty()) {
    if (auto first = arm()) {
      lock.unlock();
      m_pool.submit(std::move(first));
      lock.lock();
    }
  }
  if (m_window.empty()) {
    return nullptr;
  }
  const std::shared_ptr<Task> oldest = m_window.front();
  while (!oldest->isDone) {
    const std::size_t armedCount = m_armedCount;
    lock.unlock();
    // What is waited for comes first; then anything else that can be done meanwhile.
    bool hasWorked = true;
    if (oldest->claim()) {
      oldest->run();
    } else {
      hasWorked = m_pool.runOne();
    }
    lock.lock();
    if (!hasWorked && !oldest->isDone) {
      waitFor(*oldest, armedCount, lock);
    }
    if (!oldest->isDone && !mayWait()) {
      return nullptr;
    }
  }
  m_window.pop_front();
  m_bytesAlive -= oldest->bytes;
  m_resultBytesAlive -= oldest->resultBytes;
  std::shared_ptr<Task> following = arm();
  lock.unlock();
  if (following != nullptr) {
    m_pool.submit(std::move(following));
  }
  return oldest->isEnd ? nullptr : std::move(oldest->result);
}

}  // namespace kelvarin

#include "host/engine/row_links.h"

#include <algorithm>

#include "host/contract/late_texts.h"
#include "host/engine/action_chain.h"
#include "host/engine/messages.h"

namespace kelvarin {

using RunningState = GlobalParameters::RunningState;

RowLink::RowLink(RunningAction& producer, int pin, RunningAction& consumer,
                 const ExecutionOptions& options)
    : m_producer(producer),
      m_consumer(consumer),
      m_pinIndex(pin),
      m_pin(producer.output(pin)),
      m_batchSize(options.batchSize()) {}

const OneRow* RowLink::next() {
  if (!hasBatch()) {
    const Supply supply = fetch();
    if (supply == Supply::row) {
      noteTaken(1);
      return takeRow();
    }
    if (supply == Supply::end) {
      return nullptr;
    }
  }
  noteTaken(1);
  return rowOfBatch();
}

const OneRow* RowLink::rowOfBatch() {
  if (!m_hasColumns) [[unlikely]] {
    m_metaData = m_pin.metaData;
    m_row.setNumberOfColumns(m_pin.row.sz());
    m_hasColumns = true;
  }
  if (m_hasLateTexts) [[unlikely]] {
    const std::size_t rowsTaken = m_rows.rowsTaken();
    m_rows.start(withTexts(m_rows.batch()));
    m_rows.skip(rowsTaken);
    m_hasLateTexts = false;
  }
  m_rows.take(m_row.getAllColForWrite());
  if (m_isPassed) {
    settle();
  }
  return &m_row;
}

TakenBatch RowLink::nextBatch() {
  if (m_encoding == nullptr && m_consumer.pool() != nullptr) {
    BatchPipeline::Chain chain;
    chain.encoder = m_consumer.encoder();
    chain.sinkAction = &m_consumer.item();
    if (chain.encoder != nullptr) {
      m_encoding =
          std::make_unique<BatchPipeline>(*m_consumer.pool(), std::move(chain), std::vector<int>());
    }
  }
  return m_encoding == nullptr ? takeBatch() : takeEncodedBatch();
}

// Rows of producers that do not compute whole batches are encoded while they make more.
TakenBatch RowLink::takeEncodedBatch() {
  encodeAhead();
  if (m_encoding->isEmpty()) {
    return std::exchange(m_afterEncoding, {});
  }
  const auto result = m_encoding->next([] { return true; });
  if (result->exception) {
    std::rethrow_exception(result->exception);
  }
  return {std::move(result->batch), std::move(result->encoded)};
}

void RowLink::encodeAhead() {
  while (m_afterEncoding.batch == nullptr && !m_isInputOver && m_encoding->hasSpace() &&
         m_rowLimit > 0 && (m_encoding->isEmpty() || !mayHaveToWait())) {
    TakenBatch taken = takeBatch();
    m_isInputOver = taken.batch == nullptr;
    if (taken.encoded != nullptr) {
      m_afterEncoding = std::move(taken);
    } else if (taken.batch != nullptr) {
      m_encoding->push(std::move(taken.batch), nullptr, -1);
    }
  }
}

TakenBatch RowLink::takeBatch() {
  for (;;) {
    const Supply supply = hasBatch() ? Supply::batch : fetch();
    const bool isCollecting = m_collector && !m_collector->isEmpty();
    if (supply == Supply::row) {
      const OneRow* row = takeRow();
      if (row == nullptr) {
        return {};
      }
      if (!m_collector) {
        m_collector.emplace(typesOf(*row), m_batchSize);
      }
      if (m_collector->isEmpty()) {
        m_isBelowWaitingSource = waitingSource() != nullptr;
      }
      m_collector->append(*row);
      noteTaken(1);
      if (m_collector->isFull() || m_rowLimit == 0 || (m_isBelowWaitingSource && mayHaveToWait())) {
        return {m_collector->take(), nullptr};
      }
      continue;
    }
    if (isCollecting) {
      return {m_collector->take(), nullptr};
    }
    if (supply == Supply::end) {
      return {};
    }
    const std::size_t count = std::min(m_rows.rowsLeft(), std::max<std::size_t>(1, m_rowLimit));
    TakenBatch taken{batchAtWork(), nullptr};
    if (count < m_rows.rowsLeft()) {
      taken.batch = taken.batch->slice(0, count);
    } else if (m_rows.rowsTaken() == 0) {
      taken.encoded = std::move(m_encoded);
    }
    m_rows.skip(count);
    noteTaken(count);
    settle();
    return taken;
  }
}

RowBatchPointer RowLink::batchAtWork() {
  if (!hasBatch() && fetch() != Supply::batch) {
    return nullptr;
  }
  const RowBatchPointer& batch = m_rows.batch();
  return m_rows.rowsTaken() == 0 ? batch : batch->slice(m_rows.rowsTaken(), batch->rowCount());
}

void RowLink::pass(std::size_t count) {
  m_isPassed = true;
  m_rows.skip(count);
  noteTaken(count);
}

bool RowLink::hasRowsReady() const {
  return !isDrained() || isBatchAvailable() || (m_borrower != nullptr && m_borrower->isAtWork());
}

// The source above, without a queue in between, if it may wait for another program.
const RunningAction* RowLink::waitingSource() const {
  const RowLink* link = this;
  while (link != nullptr && !link->isQueue()) {
    const RunningAction& producer = link->producer();
    if (producer.source() != nullptr) {
      return producer.source()->mayWait() ? &producer : nullptr;
    }
    link = producer.input();
  }
  return nullptr;
}

// Rows that have come are passed on then: it may take long until there are more.
bool RowLink::mayHaveToWait() const {
  const RunningAction* source = waitingSource();
  if (source == nullptr || source->hasPartOfUnit()) {
    return false;
  }
  const RowLink* link = this;
  while (link != nullptr && !link->hasRowsReady()) {
    link = link->producer().input();
  }
  return link == nullptr;
}

PublishedBatch RowLink::borrowBatch() {
  PublishedBatch borrowed{batchAtWork(), nullptr, nullptr};
  if (borrowed.batch != nullptr) {
    borrowed.trail = std::exchange(m_trail, nullptr);
    m_rows.clear();
  }
  return borrowed;
}

void RowLink::passBatch(const BatchTrailPointer& trail, std::size_t rows) {
  trail->arriveAt(m_rowsRead);
  noteTaken(rows);
}

void RowLink::putBack(RowBatchPointer batch, BatchTrailPointer trail) {
  startBatch({std::move(batch), std::move(trail), nullptr});
}

void RowLink::settle() {
  if (m_trail != nullptr) {
    m_trail->settle(m_rows.rowsTaken());
  }
}

void RowLink::settleAtEnd() {
  if (!m_isPassed) {
    settle();
  }
}

void RowLink::askOn() {
  if (m_trail != nullptr) {
    settleAtEnd();
    m_trail->settleRest();
    m_trail = nullptr;
  }
}

void RowLink::startBatch(PublishedBatch published) {
  m_hasLateTexts = hasLateTexts(*published.batch);
  m_rows.start(std::move(published.batch));
  m_trail = std::move(published.trail);
  m_encoded = std::move(published.encoded);
  m_isPassed = false;
  m_trail->arriveAt(m_rowsRead);
}

// What a chain has borrowed comes before anything else.
bool RowLink::takeBorrowedBatch() {
  while (m_borrower != nullptr && m_borrower->isAtWork()) {
    PublishedBatch borrowed = m_borrower->takeBack();
    if (borrowed.batch == nullptr) {
      return false;
    }
    startBatch(std::move(borrowed));
    if (hasBatch()) {
      return true;
    }
  }
  return false;
}

RowLink::Supply StraightLink::fetch() {
  for (;;) {
    askOn();
    if (takeBorrowedBatch()) {
      return Supply::batch;
    }
    if (m_producer.hasBatch(m_pinIndex)) {
      startBatch(m_producer.takeBatch(m_pinIndex));
      if (hasBatch()) {
        return Supply::batch;
      }
    } else if (m_pin.isRowReady) {
      return Supply::row;
    } else if (!m_producer.advance()) {
      return Supply::end;
    }
  }
}

const OneRow* StraightLink::takeRow() {
  m_pin.isRowReady = false;
  if (++m_rowsRead != m_pin.rowsPublished) [[unlikely]] {
    m_producer.fail(engine_messages::severalRowsInOneCall(m_producer.item().name()));
    return nullptr;
  }
  return &m_pin.row;
}

bool StraightLink::isBatchAvailable() const {
  return m_producer.hasPartOfUnit();
}

bool StraightLink::isDrained() const {
  return RowLink::isDrained() && !m_pin.isRowReady && !m_producer.hasBatch(m_pinIndex);
}

RowLink::Supply ColumnsLink::fetch() {
  while (!m_pin.isAnnounced && m_producer.advance()) {
  }
  return Supply::end;
}

QueueLink::QueueLink(RunningAction& producer, int pin, RunningAction& consumer, Fork& fork,
                     const ExecutionOptions& options)
    : RowLink(producer, pin, consumer, options), m_fork(fork), m_reader(fork.queue()) {
  m_reader.join();
}

RowLink::Supply QueueLink::fetch() {
  m_wasAsked = true;
  askOn();
  if (takeBorrowedBatch()) {
    return Supply::batch;
  }
  if (m_isLetGo && !askAgain()) {
    return Supply::end;
  }
  if (!waitForBatch()) {
    m_reader.leave();
    m_rows.clear();
    return Supply::end;
  }
  RowBatchPointer batch = m_reader.next();
  if (batch == nullptr) {
    m_consumer.fail(m_fork.queue().errorText());
    return Supply::end;
  }
  startBatch({std::move(batch), std::make_shared<BatchTrail>(nullptr), nullptr});
  return Supply::batch;
}

// Whoever asked for the rows that ended with a failure takes those before it.
bool QueueLink::waitForBatch() {
  const bool wasGoingOn = m_consumer.canGoOn();
  while (!m_reader.hasBatch()) {
    m_fork.relief().relieveWhenAsked();
    if (!m_reader.hasBatch() && !m_fork.makeRows()) {
      return false;
    }
    m_endsWithFailure = wasGoingOn && m_producer.record().status == RunningState::failed;
  }
  return m_consumer.canGoOn() || m_endsWithFailure;
}

// A pin that was not asked by the first row of its action is let go; it may be asked all the same
// before any row has gone by.
bool QueueLink::askAgain() {
  if (m_fork.queue().rowsPushed() > m_rowsRead) {
    m_consumer.fail(engine_messages::rowsLetGo(m_consumer.item().name(), m_producer.item().name()));
    return false;
  }
  m_isLetGo = false;
  m_reader.join();
  return true;
}

void QueueLink::letGo() {
  m_isLetGo = true;
  m_reader.leave();
}

void QueueLink::release() {
  settleAtEnd();
  m_trail = nullptr;
  m_rows.clear();
}

namespace {

// Rows between two looks at who should work next. Readers of batches have enough in them for all
// processors; from a producer of single rows nobody should have to wait for so many.
constexpr std::size_t kRowsInStep = 64 * 1024;
constexpr std::size_t kSingleRowsInStep = 1024;
constexpr std::size_t kFewestRowsInStep = 256;
constexpr std::size_t kValuesInStep = 512 * 1024;
// Steps that may wait for readers that could be helped.
constexpr long long kCongestedSteps = 2;

}  // namespace

Fork::Fork(RunningAction& producer, OutputPin& pin, bool isOnly, const ExecutionOptions& options,
           CongestionRelief& relief)
    : m_producer(producer),
      m_pin(pin),
      m_isOnly(isOnly),
      m_options(options),
      m_queue(options),
      m_relief(relief) {}

// Wide rows are fewer, so that a step takes little memory.
std::size_t Fork::rowsInStep() {
  if (m_rowsInStep == 0 && m_pin.isAnnounced) {
    const std::size_t rows = m_producer.mayPublishBatches() ? kRowsInStep : kSingleRowsInStep;
    const auto columns = static_cast<std::size_t>(std::max(1, m_pin.row.sz()));
    m_rowsInStep = std::clamp(kValuesInStep / columns, kFewestRowsInStep, rows);
    m_rowsToAskRelief = kCongestedSteps * static_cast<long long>(m_rowsInStep);
  }
  return m_rowsInStep == 0 ? kSingleRowsInStep : m_rowsInStep;
}

bool Fork::makeRows() {
  const long long before = m_queue.rowsPushed();
  bool hasAdvanced = false;
  if (m_isOnly) {
    while (m_rowsHeld < rowsInStep() && advanceProducer()) {
      hasAdvanced = true;
    }
  } else {
    // Meanwhile the other pin's rows pile up. Calls are no measure: what one does depends on
    // threads.
    const long long end = m_producer.rowsPublished() + static_cast<long long>(kSingleRowsInStep);
    while (m_producer.rowsPublished() < end && m_producer.advance()) {
      hasAdvanced = true;
    }
  }
  closeCollector();
  if (m_rowsHeld > 0) {
    release(std::min(m_rowsHeld, rowsInStep()));
    askRelief();
  }
  return hasAdvanced || m_queue.rowsPushed() > before;
}

bool Fork::advanceProducer() {
  if (m_lastTrail != nullptr) {
    m_lastTrail->settleRest();
    m_lastTrail = nullptr;
  }
  return m_producer.advance();
}

void Fork::receive(const OneRow& row) {
  if (m_queue.readerCount() == 0) {
    return;
  }
  if (!m_collector) [[unlikely]] {
    m_collector.emplace(typesOf(row), m_options.batchSize());
  }
  m_collector->append(row);
  ++m_rowsHeld;
  if (m_collector->isFull()) {
    closeCollector();
  }
}

void Fork::receive(const RowBatchPointer& batch) {
  receive({batch, nullptr, nullptr});
}

void Fork::receive(const PublishedBatch& published) {
  closeCollector();
  m_held.push_back({published.batch, published.trail});
  m_lastTrail = published.trail;
  m_rowsHeld += published.batch->rowCount();
  // Of a producer with other readers, rows come when these ask, and wait in the queue.
  if (!m_isOnly) {
    release(published.batch->rowCount());
    askRelief();
  }
}

void Fork::closeCollector() {
  if (!m_collector || m_collector->isEmpty()) {
    return;
  }
  const std::size_t rows = m_collector->rowCount();
  m_held.push_back({m_collector->take(), nullptr});
  if (!m_isOnly) {
    release(rows);
    askRelief();
  }
}

// Passes the first rows on to the readers.
void Fork::release(std::size_t rows) {
  m_rowsHeld -= rows;
  while (rows > 0) {
    Held& held = m_held.front();
    const std::size_t count = std::min(rows, held.batch->rowCount() - held.rowsReleased);
    const bool isWhole = count == held.batch->rowCount();
    RowBatchPointer part =
        isWhole ? held.batch : held.batch->slice(held.rowsReleased, held.rowsReleased + count);
    held.rowsReleased += count;
    rows -= count;
    if (held.trail != nullptr) {
      held.trail->settle(held.rowsReleased);
    }
    if (!m_queue.push(std::move(part))) {
      m_producer.fail(m_queue.errorText());
    }
    if (held.rowsReleased == held.batch->rowCount()) {
      m_held.pop_front();
    }
  }
}

void Fork::askRelief() {
  const long long rows = m_queue.rowsWaiting();
  const long long few = kCongestedSteps * static_cast<long long>(rowsInStep());
  if (rows > m_rowsToAskRelief) [[unlikely]] {
    // Where nobody can help, asking again and again would cost more than the queue.
    m_rowsToAskRelief *= 2;
    m_relief.ask(*this);
  } else if (rows < few) {
    m_rowsToAskRelief = few;
  }
}

void Fork::noteRelief() {
  m_rowsToAskRelief =
      std::max(kCongestedSteps * static_cast<long long>(rowsInStep()), 2 * m_queue.rowsWaiting());
}

}  // namespace kelvarin

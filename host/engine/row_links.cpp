#include "host/engine/row_links.h"

#include <algorithm>

#include "host/engine/messages.h"

namespace kelvarin {

const OneRow* StraightLink::next() {
  while (!m_pin.isRowReady) {
    if (!m_producer.advance()) {
      return nullptr;
    }
  }
  m_pin.isRowReady = false;
  if (++m_rowsRead != m_pin.rowsPublished) [[unlikely]] {
    m_producer.fail(engine_messages::severalRowsInOneCall(m_producer.item().name()));
    return nullptr;
  }
  return &m_pin.row;
}

void StraightLink::take(std::size_t count) {
  m_producer.takeRows(m_pin, count);
  m_pin.rowsPublished += static_cast<long long>(count);
  m_rowsRead += static_cast<long long>(count);
}

const OneRow* ColumnsLink::next() {
  while (!m_pin.isAnnounced && m_producer.advance()) {
  }
  return nullptr;
}

QueueLink::QueueLink(RunningAction& producer, OutputPin& pin, RunningAction& consumer, Fork& fork,
                     const ExecutionOptions& options)
    : RowLink(producer, pin, options), m_consumer(consumer), m_fork(fork), m_reader(fork.queue()) {
  m_reader.join();
}

const OneRow* QueueLink::next() {
  m_wasAsked = true;
  if (m_isLetGo && !askAgain()) {
    return nullptr;
  }
  if (!waitForRow()) {
    return end();
  }
  if (!m_hasColumns) [[unlikely]] {
    m_metaData = m_pin.metaData;
    m_row.setNumberOfColumns(m_pin.row.sz());
    m_hasColumns = true;
  }
  if (!m_reader.next(m_row.getAllColForWrite())) {
    m_consumer.fail(m_fork.queue().errorText());
    return nullptr;
  }
  ++m_rowsRead;
  return &m_row;
}

bool QueueLink::waitForRow() {
  while (!m_reader.hasRow()) {
    m_fork.relief().relieveWhenAsked();
    if (!m_reader.hasRow() && !m_producer.advance()) {
      return false;
    }
  }
  return m_consumer.canGoOn();
}

// A pin that was not asked by the first row of its action is let go; it may be asked all the same
// before any row has gone by.
bool QueueLink::askAgain() {
  if (m_pin.rowsPublished > m_rowsRead) {
    m_consumer.fail(engine_messages::rowsLetGo(m_consumer.item().name(), m_producer.item().name()));
    return false;
  }
  m_isLetGo = false;
  m_reader.join();
  return true;
}

const OneRow* QueueLink::end() {
  m_reader.leave();
  m_reader.release();
  return nullptr;
}

void QueueLink::letGo() {
  m_isLetGo = true;
  m_reader.leave();
}

void Fork::receive(const OneRow& row) {
  if (!m_queue.push(row)) {
    m_producer.fail(m_queue.errorText());
    return;
  }
  const long long bytes = m_queue.bytesWaiting();
  if (bytes > m_bytesToAskRelief) [[unlikely]] {
    // Where nobody can help, asking again and again would cost more than the queue.
    m_bytesToAskRelief *= 2;
    m_relief.ask(*this);
  } else if (bytes < kCongestedBytes) {
    m_bytesToAskRelief = kCongestedBytes;
  }
}

void Fork::noteRelief() {
  m_bytesToAskRelief = std::max(kCongestedBytes, 2 * m_queue.bytesWaiting());
}

}  // namespace kelvarin

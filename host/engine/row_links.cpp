#include "host/engine/row_links.h"

#include "host/engine/messages.h"

namespace kelvarin {

inline bool RowLink::produceRow() {
  while (!m_pin.isRowReady) {
    if (!m_producer.advance()) {
      return false;
    }
  }
  m_pin.isRowReady = false;
  if (++m_rowsRead != m_pin.rowsPublished) [[unlikely]] {
    m_producer.fail(engine_messages::severalRowsInOneCall(m_producer.item().name()));
    return false;
  }
  return true;
}

const OneRow* StraightLink::next() {
  return produceRow() ? &m_pin.row : nullptr;
}

void StraightLink::take(std::size_t count) {
  m_pin.takeRows(&m_producer.item(), count);
  m_pin.rowsPublished += static_cast<long long>(count);
  m_rowsRead += static_cast<long long>(count);
}

const OneRow* HoldingLink::next() {
  m_held.release();
  return produceRow() ? m_held.show() : nullptr;
}

RowsAhead HoldingLink::rowsAhead() const {
  RowsAhead rows = rowsOfProducer();
  rows.canBeTaken = false;
  return rows;
}

const OneRow* ColumnsLink::next() {
  while (!m_pin.isAnnounced && m_producer.advance()) {
  }
  return nullptr;
}

const OneRow* QueueLink::next() {
  m_wasAsked = true;
  m_held.release();
  const OneRow* row = m_queue.isEmpty() ? nextFromProducer() : nextFromQueue();
  if (row != nullptr) {
    ++m_rowsRead;
  }
  return row;
}

// Of rows in the queue only: a row that comes straight from the producer is one that the other
// readers may make go.
RowsAhead QueueLink::rowsAhead() const {
  return m_looksAhead && !m_held.isShared() ? m_queue.rowsAhead() : RowsAhead{};
}

const OneRow* QueueLink::nextFromQueue() {
  if (!m_consumer.canGoOn()) {
    return nullptr;
  }
  if (!m_queue.pop(m_held.valuesToFill())) {
    m_consumer.fail(m_queue.errorText());
    return nullptr;
  }
  if (m_queue.isEmpty()) {
    m_bytesToAskRelief = kCongestedBytes;
  }
  return m_held.row();
}

const OneRow* QueueLink::nextFromProducer() {
  if (m_hasLostRows) {
    m_consumer.fail(engine_messages::rowsLetGo(m_consumer.item().name(), m_producer.item().name()));
    return nullptr;
  }
  m_isAsking = true;
  while (m_isAsking && m_producer.advance()) {
    m_relief.relieveWhenAsked();
  }
  const bool hasRow = !m_isAsking;
  m_isAsking = false;
  return hasRow ? m_held.row() : nullptr;
}

void QueueLink::receive(const OneRow& row) {
  if (m_isAsking) {
    m_isAsking = false;
    m_held.show();
    return;
  }
  if (m_held.isShared()) [[unlikely]] {
    m_producer.fail(engine_messages::severalRowsInOneCall(m_producer.item().name()));
    return;
  }
  if (m_isLetGo) {
    m_hasLostRows = true;
    return;
  }
  if (!m_queue.push(row)) {
    m_producer.fail(m_queue.errorText());
    return;
  }
  if (m_queue.byteCount() > m_bytesToAskRelief) [[unlikely]] {
    // Where nobody can help, asking again and again would cost more than the queue.
    m_bytesToAskRelief *= 2;
    m_relief.ask();
  }
}

void QueueLink::letGo() {
  m_isLetGo = true;
  m_hasLostRows = m_hasLostRows || !m_queue.isEmpty();
  m_queue.clear();
}

}  // namespace kelvarin

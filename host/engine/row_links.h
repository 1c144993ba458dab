// The ways in which rows go from an output pin to an input pin.
//
// A straight link makes the producer go on and hands its row over as it is. Where a row of the
// producer goes to more than one reader, each reader has a queue link: the reader that is asking
// gets the row itself, the others a copy in their queue. Below such a place rows are held
// (held_row.h). Every link lets its reader look ahead at what the producer, or the queue, has in
// hand: only the reader's own next row makes that go. Rows are taken together along straight links
// only, where nobody else waits for what the actions above do meanwhile.
// Used by: graph_execution.cpp.
// Threads: the engine thread.
#pragma once

#include <vector>

#include "host/contract/pin_ports.h"
#include "host/engine/held_row.h"
#include "host/engine/row_queue.h"
#include "host/engine/running_action.h"

namespace kelvarin {

class RowLink : public InputPin {
 public:
  RowLink(RunningAction& producer, OutputPin& pin, const ExecutionOptions& options)
      : m_producer(producer), m_pin(pin), m_looksAhead(options.looksAhead) {}

  long long rowsRead() const { return m_rowsRead; }
  const OneRow* announcedColumns() override { return m_pin.isAnnounced ? &m_pin.row : nullptr; }
  ActionItem* upstreamAction() const override { return &m_producer.item(); }

 protected:
  // Makes the producer go on until a row is ready; false when there is none.
  bool produceRow();
  RowsAhead rowsOfProducer() const {
    return m_looksAhead ? m_pin.rowsAheadFrom(m_rowsRead - 1) : RowsAhead{};
  }

  RunningAction& m_producer;
  OutputPin& m_pin;
  const bool m_looksAhead;
  long long m_rowsRead = 0;
};

class StraightLink final : public RowLink {
 public:
  using RowLink::RowLink;
  const OneRow* next() override;
  RowsAhead rowsAhead() const override { return rowsOfProducer(); }
  void take(std::size_t count) override;
};

// A straight link below a place where rows go to several readers.
class HoldingLink final : public RowLink {
 public:
  HoldingLink(RunningAction& producer, OutputPin& pin, const ExecutionOptions& options)
      : RowLink(producer, pin, options), m_held(pin) {}
  const OneRow* next() override;
  RowsAhead rowsAhead() const override;
  HeldRow& heldRow() { return m_held; }

 private:
  HeldRow m_held;
};

// Gives the producer's columns, once it has announced them, and no rows.
class ColumnsLink final : public RowLink {
 public:
  using RowLink::RowLink;
  const OneRow* next() override;
};

// Asked for help where rows pile up for a reader that could run.
class CongestionRelief {
 public:
  virtual ~CongestionRelief() = default;
  void ask() { m_isAsked = true; }
  void relieveWhenAsked() {
    if (m_isAsked) [[unlikely]] {
      m_isAsked = false;
      relieve();
    }
  }

 private:
  virtual void relieve() = 0;

  bool m_isAsked = false;
};

class QueueLink final : public RowLink {
 public:
  QueueLink(RunningAction& producer, OutputPin& pin, RunningAction& consumer,
            const ExecutionOptions& options, CongestionRelief& relief)
      : RowLink(producer, pin, options),
        m_consumer(consumer),
        m_held(pin),
        m_queue(options),
        m_relief(relief) {}

  const OneRow* next() override;
  RowsAhead rowsAhead() const override;
  HeldRow& heldRow() { return m_held; }

  // A row of the producer.
  void receive(const OneRow& row);
  // The consumer takes no more rows.
  void letGo();
  bool wasAsked() const { return m_wasAsked; }
  long long bytesWaiting() const { return m_queue.byteCount(); }
  long long rowsWaiting() const { return m_queue.rowCount(); }

 private:
  static constexpr long long kCongestedBytes = 256 * 1024;

  const OneRow* nextFromQueue();
  const OneRow* nextFromProducer();

  RunningAction& m_consumer;
  HeldRow m_held;
  RowQueue m_queue;
  CongestionRelief& m_relief;
  long long m_bytesToAskRelief = kCongestedBytes;
  bool m_wasAsked = false;
  bool m_isAsking = false;
  bool m_isLetGo = false;
  bool m_hasLostRows = false;
};

// Gives the rows of one output pin to its readers.
class Fork final : public RowReceiver {
 public:
  void addReader(QueueLink* reader) { m_readers.push_back(reader); }
  void receive(const OneRow& row) override {
    for (QueueLink* reader : m_readers) {
      reader->receive(row);
    }
  }

 private:
  std::vector<QueueLink*> m_readers;
};

}  // namespace kelvarin

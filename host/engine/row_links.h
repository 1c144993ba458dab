// The ways in which rows go from an output pin to an input pin.
//
// A straight link makes the producer go on and passes its row on as it is: nobody else can make
// the producer, or anything between it and the next fork above, go on meanwhile. Where rows of an
// action go to more than one reader, a fork copies each row once into a queue, and each reader
// takes it from there; so nothing below a fork shows values that belong to actions above it. Every
// link lets its reader look ahead at what the producer, or the queue, has ready: only the reader's
// own next row makes that go. Rows are taken together along straight links only, where nobody else
// waits for what the actions above do meanwhile.
// Used by: graph_execution.cpp, sink_schedule.cpp, running_action.cpp.
// Threads: the engine thread.
#pragma once

#include <vector>

#include "host/contract/pin_ports.h"
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
  RunningAction& m_producer;
  OutputPin& m_pin;
  const bool m_looksAhead;
  long long m_rowsRead = 0;
};

class StraightLink final : public RowLink {
 public:
  using RowLink::RowLink;
  const OneRow* next() override;
  RowsAhead rowsAhead() const override {
    return m_looksAhead ? m_pin.rowsAheadFrom(m_rowsRead - 1) : RowsAhead{};
  }
  void take(std::size_t count) override;
};

// Has the producer's columns, once it has announced them, and no rows.
class ColumnsLink final : public RowLink {
 public:
  using RowLink::RowLink;
  const OneRow* next() override;
};

class Fork;

// Asked for help where rows pile up for readers that could run.
class CongestionRelief {
 public:
  virtual ~CongestionRelief() = default;
  void ask(Fork& congested) { m_congested.push_back(&congested); }
  void relieveWhenAsked() {
    if (!m_congested.empty()) [[unlikely]] {
      relieve();
    }
  }

 protected:
  std::vector<Fork*> m_congested;

 private:
  virtual void relieve() = 0;
};

class QueueLink final : public RowLink {
 public:
  QueueLink(RunningAction& producer, OutputPin& pin, RunningAction& consumer, Fork& fork,
            const ExecutionOptions& options);

  const OneRow* next() override;
  RowsAhead rowsAhead() const override { return m_looksAhead ? m_reader.rowsAhead() : RowsAhead{}; }

  RunningAction& consumer() const { return m_consumer; }
  bool wasAsked() const { return m_wasAsked; }
  long long rowsWaiting() const { return m_isLetGo ? 0 : m_pin.rowsPublished - m_rowsRead; }
  // The consumer takes no more rows. What it makes of the last one may still be read.
  void letGo();
  // That is not read any more either.
  void release() { m_reader.release(); }

 private:
  bool waitForRow();
  bool askAgain();
  const OneRow* end();

  RunningAction& m_consumer;
  Fork& m_fork;
  RowQueue::Reader m_reader;
  PinOutMetaData m_metaData;
  OneRow m_row{&m_metaData};
  bool m_hasColumns = false;
  bool m_wasAsked = false;
  bool m_isLetGo = false;
};

// Where the rows of one output pin go to several readers, or wait for the reader of another pin.
class Fork final : public RowReceiver {
 public:
  Fork(RunningAction& producer, const ExecutionOptions& options, CongestionRelief& relief)
      : m_producer(producer), m_queue(options), m_relief(relief) {}

  void addReader(QueueLink* reader) { m_readers.push_back(reader); }
  const std::vector<QueueLink*>& readers() const { return m_readers; }
  RowQueue& queue() { return m_queue; }
  CongestionRelief& relief() { return m_relief; }
  void receive(const OneRow& row) override;
  // Its readers have been helped as far as they could be.
  void noteRelief();

 private:
  static constexpr long long kCongestedBytes = 256 * 1024;

  RunningAction& m_producer;
  RowQueue m_queue;
  CongestionRelief& m_relief;
  std::vector<QueueLink*> m_readers;
  long long m_bytesToAskRelief = kCongestedBytes;
};

}  // namespace kelvarin

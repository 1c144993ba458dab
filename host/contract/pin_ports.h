// Where an action's rows come from and go to; the engine and the test harness make them.
//
// Threads: the engine thread of the graph.
#pragma once

#include <memory>
#include <vector>

#include "host/contract/batch_steps.h"
#include "host/contract/one_row.h"

class ActionItem;

// The reading end of a link.
class InputPin {
 public:
  virtual ~InputPin() = default;
  // The next row, or null when there is none; valid until the next call of next() on this pin.
  virtual const OneRow* next() = 0;
  // The columns that the upstream pin has announced, without values; null while it has not.
  virtual const OneRow* announcedColumns() = 0;
  virtual ActionItem* upstreamAction() const = 0;
  // The rows after the one that next() returned, as a batch; for sinks. Rows that come one by one
  // are collected.
  virtual kelvarin::TakenBatch nextBatch() = 0;
};

// Receives the rows of an output pin that do not go straight to the consumer.
class RowReceiver {
 public:
  virtual ~RowReceiver() = default;
  virtual void receive(const OneRow& row) = 0;
  virtual void receive(const kelvarin::RowBatchPointer& batch) = 0;
};

// The writing end: the row to fill, and what became of the last one.
struct OutputPin {
  PinOutMetaData metaData;
  OneRow row{&metaData};
  bool isAnnounced = false;         // names, types and sort order are final
  bool isRowReady = false;          // a published row waits for the one consumer
  RowReceiver* receiver = nullptr;  // where rows go when there is not exactly one consumer waiting
  long long rowsPublished = 0;
  bool isRead = true;  // somebody takes the rows; else they are counted only

  OutputPin() = default;
  OutputPin(const OutputPin&) = delete;
  OutputPin& operator=(const OutputPin&) = delete;

  void publish() {
    isAnnounced = true;
    ++rowsPublished;
    if (receiver == nullptr) [[likely]] {
      isRowReady = true;
    } else {
      receiver->receive(row);
    }
  }
};

// All pins of one action in one run. A pin that is not linked has no InputPin.
struct ActionPorts {
  std::vector<std::unique_ptr<InputPin>> inputs;
  std::vector<std::unique_ptr<OutputPin>> outputs;
};

// Where an action's rows come from and go to; the engine and the test harness make them.
//
// Threads: the engine thread of the graph.
#pragma once

#include <memory>
#include <vector>

#include "host/contract/one_row.h"
#include "host/contract/rows_in_hand.h"

class ActionItem;

// Goes on as if `count` more rows of the last offer had been computed and published.
using TakeRows = void (*)(ActionItem* action, std::size_t count);

// The reading end of a link.
class InputPin {
 public:
  virtual ~InputPin() = default;
  // The next row, or null when there is none; valid until the next call of next() on this pin.
  virtual const OneRow* next() = 0;
  // The columns that the upstream pin has announced, without values; null while it has not.
  virtual const OneRow* announcedColumns() = 0;
  virtual ActionItem* upstreamAction() const = 0;
  // The row that next() returned and those after it, where the producer knows them already.
  virtual RowsAhead rowsAhead() const { return {}; }
  // Takes the `count` rows after the one that next() returned, as if it had returned them one by
  // one. They are among rowsAhead(), which says that they can be taken; their values stay where
  // they are.
  virtual void take(std::size_t /*count*/) {}
};

// Receives the rows of an output pin that do not go straight to the consumer.
class RowReceiver {
 public:
  virtual ~RowReceiver() = default;
  virtual void receive(const OneRow& row) = 0;
};

// The writing end: the row to fill, and what became of the last one.
struct OutputPin {
  PinOutMetaData metaData;
  OneRow row{&metaData};
  bool isAnnounced = false;         // names, types and sort order are final
  bool isRowReady = false;          // a published row waits for the one consumer
  RowReceiver* receiver = nullptr;  // where rows go when there is not exactly one consumer waiting
  long long rowsPublished = 0;
  // What was offered last: so many rows, the first of them published as this number.
  RowsAhead offered;
  long long firstOffered = 0;
  TakeRows takeRows = nullptr;  // null: they come one by one

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

  // The next row to be published and the `count - 1` after it are those of `rows`.
  void offer(const RowsInHand& rows, std::size_t count, TakeRows take) {
    offered = {&rows, 0, count, take != nullptr};
    firstOffered = rowsPublished;
    takeRows = take;
  }
  // Of the offer, the rows from the one published as that number on.
  RowsAhead rowsAheadFrom(long long number) const {
    const auto skipped =
        static_cast<std::size_t>(number - firstOffered);  // huge when it came before
    return skipped < offered.count
               ? RowsAhead{offered.rows, skipped, offered.count - skipped, offered.canBeTaken}
               : RowsAhead{};
  }
};

// All pins of one action in one run. A pin that is not linked has no InputPin.
struct ActionPorts {
  std::vector<std::unique_ptr<InputPin>> inputs;
  std::vector<std::unique_ptr<OutputPin>> outputs;
};

// Collects the rows that an output pin publishes into batches, and passes these on.
//
// Used by: pin_rows_request.cpp.
// Threads: the engine thread.
#pragma once

#include <chrono>
#include <memory>

#include "host/contract/pin_ports.h"
#include "host/contract/pin_rows.h"

namespace kelvarin {

class RowTap final : public RowReceiver {
 public:
  RowTap(const OutputPin& pin, RowsReceiver& receiver, long long limit, quint64 version)
      : m_pin(pin), m_receiver(receiver), m_limit(limit), m_version(version) {}

  void receive(const OneRow& row) override;
  void receive(const RowBatchPointer& batch) override;
  bool isFull() const { return m_rowCount == m_limit; }
  // Whether the receiver has got the columns.
  bool hasColumns() const { return m_hasColumns; }
  // Passes on what has waited for a while, the first rows sooner, so that slow branches show
  // something.
  void flushWhenDue();
  // Passes on what there is; of an announced pin without rows, the columns.
  void finish();

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::size_t kRowsInBatch = 1000;
  static constexpr std::size_t kBytesInBatch = 4 << 20;
  // Enough to fill a window; they need not wait for the rest of a batch.
  static constexpr long long kFirstRows = 100;
  static constexpr std::chrono::milliseconds kWaitOfFirstRows{20};
  static constexpr std::chrono::milliseconds kWaitOfRows{100};

  void passColumns();
  bool isBatchFull() const;
  void flush();

  const OutputPin& m_pin;
  RowsReceiver& m_receiver;
  const long long m_limit;
  const quint64 m_version;
  PinColumns m_columns;
  bool m_hasColumns = false;
  std::shared_ptr<PinRows> m_batch;
  long long m_rowCount = 0;
  bool m_hasPassedRows = false;
  Clock::time_point m_batchStart;
  PinOutMetaData m_columnsOfView;
  OneRow m_view{&m_columnsOfView};  // the rows of batches
};

}  // namespace kelvarin

// Rows of a pin that an editor or a preview asks for, outside a run of the graph.
//
// The program behind HostServices computes the branch of the pin in a thread of its own, from a
// copy of the graph. No sink is opened, so nothing is written or deleted.
// Threads: requestRows() on the user-interface thread, the receiver on the request's own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/contract/column_bytes.h"
#include "host/contract/one_row.h"
#include "host/contract/pin_columns.h"

class ActionItem;

namespace kelvarin {

// Consecutive rows, column by column.
class KELVARIN_CORE PinRows {
 public:
  PinRows(PinColumns columns, long long firstRow);

  const PinColumns& columns() const { return m_columns; }
  std::size_t columnCount() const { return m_columns.columns.size(); }
  std::size_t rowCount() const { return m_rowCount; }
  long long firstRow() const { return m_firstRow; }  // counted from 0

  // The bytes of a value (column_bytes.h), as long as no row is appended; null where it is missing.
  const unsigned char* value(std::size_t row, std::size_t column) const;

  // Copies the values of a row with these columns.
  void append(const OneRow& row);
  std::size_t byteCount() const { return m_byteCount; }

 private:
  static constexpr std::uint32_t kMissing = 0xFFFFFFFFu;

  // The values of one column, and where in `bytes` each begins; kMissing for a null pointer.
  struct Values {
    std::vector<unsigned char> bytes;
    std::vector<std::uint32_t> starts;
  };

  PinColumns m_columns;
  long long m_firstRow;
  std::size_t m_rowCount = 0;
  std::size_t m_byteCount = 0;
  std::vector<Values> m_values;  // one a column
};

// Who gets the rows. All calls come from one thread, rowsEnded() once and last, also after the
// request has been cancelled. The request keeps the receiver until then, so the last owner of a
// receiver may be that thread.
class KELVARIN_CORE RowsReceiver {
 public:
  virtual ~RowsReceiver();
  // Before the first rows; also where there are none. Not known: the reason is in them.
  virtual void columnsArrived(const PinColumns& columns) = 0;
  virtual void rowsArrived(std::shared_ptr<const PinRows> rows) = 0;

  enum class End {
    complete,  // the pin has no more rows
    limit,     // as many as were asked for
    failed,    // `message` says why
    cancelled
  };
  virtual void rowsEnded(End end, const QString& message) = 0;
  // Just before a failed end: the name of the action that reported it, where one did.
  virtual void actionFailed(const QString&) {}
};

// Destroying it cancels what has not ended; neither waits for anything.
class KELVARIN_CORE RowsRequest {
 public:
  virtual ~RowsRequest();
  virtual void cancel() = 0;
};

// The first `limit` rows of a pin of an action of the open graph; with 0 its columns alone, which
// end with `limit`. Null when the host cannot, or nothing is linked to an input pin.
KELVARIN_CORE std::unique_ptr<RowsRequest> requestRows(const ActionItem& action, int pin,
                                                       bool isOutput, long long limit,
                                                       std::shared_ptr<RowsReceiver> receiver);

}  // namespace kelvarin

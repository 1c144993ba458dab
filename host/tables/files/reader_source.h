// The base of the actions whose rows come from a reader: no pin in, one out.
//
// The first call of the row routine opens the reader and announces the columns; a check ends there.
// In a run the host then reads units, and calls the routine again when there are no more: what
// ended the reading is logged then, after the rows before it.
// Used by: table_source.h for files; sources of streams.
// Threads: the engine's, but for readUnit() and wakeAll().
// Errors: logged, and the run fails.
#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "host/contract/action_item.h"
#include "host/contract/described_action.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/sort_order/sort_order.h"

namespace kelvarin {

class ReaderSource : public ActionItem, public BatchSource {
 public:
  char init() override;
  char close() override;
  void setComputeRoutine() override { computeRoutine = &ReaderSource::openAndAnnounce; }
  // Ends a waiting readUnit() soon; any thread.
  void wakeAll() override { m_isWoken = true; }
  float computeCompletion() const override;
  char canRunInParallel(QString what, bool* reason) override;

  // Before a run: the last rows of the table are all that counts, so that the reader may leave out
  // those before them where it need not read them.
  void wantLastRows(long long count) { m_lastRows = count; }
  // Before a run: see BatchReader::countOnly().
  void wantCountOnly() { m_isCountWanted = true; }

  bool canReadUnits() const override { return m_isReading; }
  std::unique_ptr<BatchUnit> readUnit() override;
  RowBatchPointer accept(BatchUnit& unit) override;
  bool readOn() override;
  bool mayWait() const override { return m_reader != nullptr && m_reader->mayWait(); }
  bool hasUnitReady() const override { return m_reader == nullptr || m_reader->hasUnitReady(); }

 protected:
  ReaderSource(XMLNode node, GlobalParameters* parameters);

  // Errors are those of the settings.
  virtual Result<std::unique_ptr<BatchReader>, QString> makeReader() = 0;
  // That the rows of these columns have; it is verified.
  virtual Result<QVector<SortInfos>, QString> declaredOrder(const PinOutMetaData& columns) const;
  // After the error of a reader that could not be opened.
  virtual void explainFailureToOpen() const {}
  // Logs the error; always true, for routines that end with it.
  bool endWithError(const QString& text, const FaultLocation& location = {});

 private:
  class OrderedUnit;

  static bool openAndAnnounce(ActionItem* action);
  static bool endReading(ActionItem* action);

  Status<QString> open();
  Status<QString> announce(const TableColumns& columns);
  bool isStopped() const { return m_isWoken || (run() != nullptr && !run()->isRunning()); }
  RowBatchPointer acceptRead(TableUnit& unit);
  std::optional<OrderBreak> firstBreak(const OrderedUnit& unit);
  ReadFault outOfOrder(const OrderBreak& found) const;

  std::unique_ptr<BatchReader> m_reader;
  bool m_isReading = false;
  ReadFault m_failure;  // what ended the reading, to be logged after the rows before it
  std::atomic<bool> m_isWoken{false};

  SortOrderChecker m_orderChecker;
  bool m_isOrderChecked = false;
  PinOutMetaData m_columns;
  OneRow m_checkedRow{&m_columns};
  long long m_lastRows = -1;  // all rows count
  bool m_isCountWanted = false;
  long long m_rowsAccepted = 0;  // after those that were left out
};

}  // namespace kelvarin

// The base of the actions that read a table from a file: no pin in, one out.
//
// The first call of the row routine opens the file and announces the columns; a check ends there.
// In a run the host then reads the units of the file, and calls the routine again when there are no
// more: what ended the reading is logged then, after the rows before it.
// Threads: the engine's, but for readUnit() and wakeAll().
// Errors: logged, and the run fails.
#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "host/contract/action_item.h"
#include "host/contract/claimed_names.h"
#include "host/contract/described_action.h"
#include "host/files/file_hints.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/sort_order/sort_order.h"

namespace kelvarin {

class TableSource : public ActionItem, public BatchSource, public FileUser {
 public:
  char init() override;
  char close() override;
  void setComputeRoutine() override { computeRoutine = &TableSource::openAndAnnounce; }
  // Ends a waiting readUnit() soon; any thread.
  void wakeAll() override { m_isWoken = true; }
  float computeCompletion() const override;
  char canRunInParallel(QString what, bool* reason) override;

  bool canReadUnits() const override { return m_isReading; }
  std::unique_ptr<BatchUnit> readUnit() override;
  RowBatchPointer accept(BatchUnit& unit) override;
  bool readOn() override;
  bool mayWait() const override { return m_reader != nullptr && m_reader->mayWait(); }

  QList<UsedFile> usedFiles() const override;

  const QString& file() const { return m_file; }
  // The attribute `file`.
  static AttributeDescription describedFile();

 protected:
  TableSource(XMLNode node, GlobalParameters* parameters);

  // The reader of `path`, which is expanded. Errors are those of the settings.
  virtual Result<std::unique_ptr<BatchReader>, QString> makeReader(const QString& path) const = 0;
  // For the hint at a file of another format.
  virtual FileFormat format() const = 0;

  void setSortedOn(const QString& text) { m_sortedOn = text; }
  const QString& sortedOn() const { return m_sortedOn; }
  // Writes the element's head and the attribute `file`.
  void saveHead(std::wostringstream& out, const QString& name) const;

 private:
  class OrderedUnit;

  static bool openAndAnnounce(ActionItem* action);
  static bool endReading(ActionItem* action);

  Status<QString> open();
  void explainFailureToOpen() const;
  Status<QString> announce(const TableColumns& columns);
  bool isStopped() const { return m_isWoken || (run() != nullptr && !run()->isRunning()); }
  RowBatchPointer acceptRead(TableUnit& unit);
  std::optional<OrderBreak> firstBreak(const OrderedUnit& unit);
  bool endWithError(const QString& text);
  QString outOfOrderText(const OrderBreak& found) const;

  QString m_file;
  QString m_sortedOn;
  ClaimedNames m_names;

  std::unique_ptr<BatchReader> m_reader;
  bool m_isReading = false;
  QString m_failure;  // what ended the reading, to be logged after the rows before it
  std::atomic<bool> m_isWoken{false};

  SortOrderChecker m_orderChecker;
  bool m_isOrderChecked = false;
  PinOutMetaData m_columns;
  OneRow m_checkedRow{&m_columns};
  long long m_rowsAccepted = 0;
};

}  // namespace kelvarin

// The base of the actions that read a table from a file: no pin in, one out.
//
// The first call of the row routine opens the file and announces the columns; the later ones
// publish the rows of the batches that a ReadAhead fills. A check ends after the announcement.
// Threads: the engine's; a ReadAhead opens and reads on one of its own.
// Errors: logged, and the run fails.
#pragma once

#include <memory>

#include "host/contract/action_item.h"
#include "host/contract/claimed_names.h"
#include "host/contract/described_action.h"
#include "host/files/file_hints.h"
#include "host/tables/files/read_ahead.h"
#include "host/tables/sort_order/sort_order.h"

namespace kelvarin {

class TableSource : public ActionItem, public FileUser {
 public:
  char init() override;
  char close() override;
  void setComputeRoutine() override { computeRoutine = &TableSource::openAndAnnounce; }
  float computeCompletion() const override;
  char canRunInParallel(QString what, bool* reason) override;

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
  static bool openAndAnnounce(ActionItem* action);
  static bool publishRow(ActionItem* action);
  static void skipRows(ActionItem* action, std::size_t count);

  Status<QString> open();
  void explainFailureToOpen() const;
  Status<QString> announce(const TableColumns& columns);
  bool isStopped() const { return run() != nullptr && !run()->isRunning(); }
  bool takeNextBatch();
  bool endWithError(const QString& text);
  QString outOfOrderText();

  QString m_file;
  QString m_sortedOn;
  ClaimedNames m_names;

  std::unique_ptr<BatchReader> m_reader;
  std::unique_ptr<ReadAhead> m_readAhead;
  RowBatch* m_batch = nullptr;
  SortOrderChecker m_orderChecker;
  bool m_isOrderChecked = false;
  long long m_rowsPublished = 0;
};

}  // namespace kelvarin

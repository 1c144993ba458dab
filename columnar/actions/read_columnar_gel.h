// Reads columnar files and outputs their rows.
//
// The first call of the row routine finds the files and opens the first one; rows come by units,
// and the rest is in columnar_read.h.
// Threads: those of ActionItem and BatchSource.
// Errors: logged, and the run fails.
#pragma once

#include <memory>

#include "actions/frame/catalogued.h"
#include "columnar/actions/block_filter.h"
#include "columnar/actions/columnar_read.h"
#include "columnar/actions/read_settings.h"
#include "host/contract/action_item.h"
#include "host/contract/batch_rows.h"
#include "host/contract/partial_source.h"

namespace kelvarin {

class ReadColumnarGel : public Catalogued<ReadColumnarGel, ActionItem>,
                        public FileUser,
                        public BatchSource,
                        public PartialSource {
 public:
  ReadColumnarGel(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  char close() override;
  void setComputeRoutine() override;
  float computeCompletion() const override;
  char fullTableRequiredToComputeMetas(int pin, bool* isKnown) override;
  QList<UsedFile> usedFiles() const override;

  bool canReadUnits() const override {
    return m_read && m_rows.rowsLeft() == 0 && m_read->canReadUnits();
  }
  std::unique_ptr<BatchUnit> readUnit() override { return m_read->readUnit(); }
  RowBatchPointer accept(BatchUnit& unit) override {
    return m_read->accept(static_cast<BlockUnit&>(unit));
  }
  bool readOn() override { return m_read->readOn(); }
  int maxUnitsAhead() const override { return m_read->maxUnitsAhead(); }
  void allowLateTexts() override { m_read->allowLateTexts(); }
  void readOnly(const TablePart& part) override { m_part = part; }

  // For editors, between runs. A setter leaves what saving and reading the action's XML would; the
  // settings decide the number of input pins.
  const ReadColumnarSettings& settings() const { return m_settings; }
  void setSettings(ReadColumnarSettings settings);
  const BlockFilter& blockFilter() const { return m_blockFilter; }
  void setBlockFilter(BlockFilter filter);
  const QStringList& columnsToRead() const { return m_columnsToRead; }
  void setColumnsToRead(QStringList columns);

  // For tests: replaces the sleep while a missing file is waited for.
  void setPause(Pause pause) { m_pause = std::move(pause); }

 private:
  static bool computeFirstRow(ActionItem* action);
  static bool computeRow(ActionItem* action);
  [[nodiscard]] bool claimFiles();  // false: logged
  // Warns of a filter that is set but not applied, or the reverse, and of an unused list of
  // columns.
  void warnOfIdleSettings() const;

  ReadColumnarSettings m_settings;
  BlockFilter m_blockFilter;
  QStringList m_columnsToRead;
  TablePart m_part;
  Pause m_pause = sleepFor;
  ClaimedNames m_names;

  std::unique_ptr<ColumnarRead> m_read;
  BatchRows m_rows;  // that are published one by one
};

}  // namespace kelvarin

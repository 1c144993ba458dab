// Reads columnar files and outputs their rows.
//
// The first call of the row routine finds the files and opens the first one, later calls output
// rows; the rest is in columnar_read.h.
// Threads: those of ActionItem, and one reading thread.
// Errors: logged, and the run fails.
#pragma once

#include <memory>

#include "actions/frame/catalogued.h"
#include "columnar/actions/block_filter.h"
#include "columnar/actions/columnar_read.h"
#include "columnar/actions/read_settings.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class ReadColumnarGel : public Catalogued<ReadColumnarGel, ActionItem>, public FileUser {
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

  // For editors, between runs. A setter leaves what saving and reading the action's XML would; the
  // settings decide the number of input pins.
  const ReadColumnarSettings& settings() const { return m_settings; }
  void setSettings(ReadColumnarSettings settings);
  const BlockFilter& blockFilter() const { return m_blockFilter; }
  void setBlockFilter(BlockFilter filter);
  const QStringList& columnsToRead() const { return m_columnsToRead; }
  void setColumnsToRead(QStringList columns);

  // The block whose rows are published; null when there is none.
  DecodedBlock* block() const { return m_block; }
  // False at the end and after a failure.
  bool takeNextBlock();

  // For tests: replaces the sleep while a missing file is waited for.
  void setPause(Pause pause) { m_pause = std::move(pause); }

 private:
  static bool computeFirstRow(ActionItem* action);
  [[nodiscard]] bool claimFiles();  // false: logged
  // Warns of a filter that is set but not applied, or the reverse, and of an unused list of
  // columns.
  void warnOfIdleSettings() const;

  ReadColumnarSettings m_settings;
  BlockFilter m_blockFilter;
  QStringList m_columnsToRead;
  Pause m_pause = sleepFor;
  ClaimedNames m_names;

  std::unique_ptr<ColumnarRead> m_read;
  DecodedBlock* m_block = nullptr;  // the source of the current rows
};

}  // namespace kelvarin

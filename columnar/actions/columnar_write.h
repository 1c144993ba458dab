// One run of writeColumnarGel: which rows are written, and to which file each goes.
//
// Planned with the first row; nothing is deleted, opened or created before it.
// Threads: the engine's.  Errors: logged, and the run is marked as failed.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "columnar/actions/output_files.h"
#include "columnar/actions/row_condition.h"
#include "columnar/actions/split_names.h"
#include "host/contract/batch_rows.h"
#include "host/files/split_values.h"

namespace kelvarin {

class ColumnarWrite {
 public:
  ColumnarWrite(ActionItem& action, const WriteColumnarSettings& settings,
                const ListedColumnSets& listedSets, ClaimedNames& names, const Pause& pause);

  // Finds the columns that the settings name. False: logged.
  [[nodiscard]] bool plan(const OneRow& columns);
  // These write rows of pin 0. False: the run ends.
  [[nodiscard]] bool write(const OneRow& row);
  [[nodiscard]] bool write(const RowBatchPointer& batch);
  // The input has no more rows.
  void endOfRows();
  // Closes every file with the run's state. False: what was written is not all on the disk.
  bool end();

 private:
  using Table = OutputFiles::Table;
  using Write = bool (ColumnarWrite::*)(const OneRow& row);

  bool planSplit(const OneRow& columns);
  bool planSplitByValue(const OneRow& columns);
  bool planNaming();
  bool writeInOneFile(const OneRow& row);
  bool writeEachRow(const RowBatchPointer& batch);
  bool writeBySize(const OneRow& row);
  bool writeByValue(const OneRow& row);
  bool changeSplit(const OneRow& row);
  // Nothing: logged.
  std::optional<QString> splitFile(const OneRow& row);
  QString logName() const { return m_action.expandString(m_settings.file); }
  void logNamingError(const NamingExpressions::Error& error) const;

  ActionItem& m_action;
  const WriteColumnarSettings& m_settings;
  const ListedColumnSets& m_listedSets;
  ClaimedNames& m_names;
  const Pause& m_pause;

  QString m_file;  // resolved
  std::optional<OutputFiles> m_files;
  std::optional<RowCondition> m_test;
  Write m_write = nullptr;
  bool m_takesBatches = false;  // all rows go into one file
  // Of a batch that is looked at row by row: the rows, and the current one with its columns.
  BatchRows m_rows;
  PinOutMetaData m_columns;
  OneRow m_row{&m_columns};

  Table m_table;      // the current file, unless m_openSplits has it
  int m_segment = 0;  // the next one, when splitting by size
  int m_splitColumn = -1;
  bool m_isSortedOnSplit = false;
  std::optional<std::string> m_splitValue;  // of the current rows, as a mark
  std::optional<NamingExpressions> m_naming;
  std::unordered_map<std::string, Table> m_openSplits;  // by value, when not sorted
  Table* m_currentSplit = nullptr;
  SplitFiles m_splitFiles;  // by nameForSplit()
};

}  // namespace kelvarin

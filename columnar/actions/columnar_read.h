// One run of ReadColumnarGel: its files in order, and their rows.
//
// Made by the action at its first row and destroyed when it is closed. Opening, columns and
// messages are here; damage_policy.h decides about damage. Rows come by units; where a unit has
// damage between its rows, those after it come by nextRows(), so that all is judged in its order.
// Threads: the engine's; readUnit() on any, one at a time; fractionDone() from any.
// Errors: logged here, and the run is marked as failed.
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <optional>

#include "columnar/actions/block_filter_evaluation.h"
#include "columnar/actions/column_choice.h"
#include "columnar/actions/damage_policy.h"
#include "columnar/actions/read_settings.h"
#include "columnar/actions/waiting.h"
#include "columnar/reader/block_units.h"
#include "host/contract/claimed_names.h"

namespace kelvarin {

class ColumnarRead {
 public:
  // All but the last outlive this object.
  ColumnarRead(ActionItem& action, const ReadColumnarSettings& settings, const BlockFilter& filter,
               const QStringList& columnsToRead, const TablePart& part, ClaimedNames& names,
               Pause pause);

  // Finds the names, opens the first file and announces its columns. False: no file to read, or a
  // failure.
  bool begin();
  // See BatchSource.
  bool canReadUnits() const;
  std::unique_ptr<BatchUnit> readUnit();
  RowBatchPointer accept(BlockUnit& unit);
  bool readOn();
  int maxUnitsAhead() const;
  void allowLateTexts() { m_textForm = TextForm::late; }
  // The next rows of the units that have been accepted; null when there are none.
  RowBatchPointer nextRows();

  // 0 to 1, -1 when unknown.
  float fractionDone() const { return m_fractionDone; }
  long long blocksRead() const { return m_blocksRead; }
  long long blocksSkipped() const { return m_blocksSkipped; }

 private:
  enum class Opening { opened, skipped, failed };

  bool findNames();
  bool claimFiles();
  std::optional<QStringList> findFiles();
  // False: logged. Without a list all columns are read.
  bool findColumns(std::optional<QStringList>& names);
  void countRows();

  bool openNextFile();
  Opening openFile(const QString& path);
  Opening missFile();
  Opening failToOpen(const OpenFailure& failure);
  // These log.
  Opening refuse(const QString& line);
  static void explain(const QString& hint);  // nothing where it is empty
  bool fail(const QString& line);
  bool chooseColumns();
  bool prepareFilter();
  bool startUnits();
  void announceColumns();
  void closeFile();

  // Handles the next event of a file; null when it has no rows.
  RowBatchPointer take(const ReadEvent& event);
  void follow(AfterDamage decision);
  void reportProgress(std::uint64_t rowsOfFile);
  bool isRunning() const;

  ActionItem& m_action;
  const ReadColumnarSettings& m_settings;
  const QStringList& m_columnsToRead;
  const TablePart& m_part;
  ClaimedNames& m_names;
  const Pause m_pause;
  DamagePolicy m_damage;

  QStringList m_files;
  qsizetype m_nextFile = 0;
  std::optional<ColumnChoice> m_choice;
  bool m_isAnnounced = false;
  QString m_firstFile;  // its columns are those of the output
  BlockFilterEvaluation m_filter;
  bool m_isFilterCompiled = false;

  // The file that is being read.
  QString m_file;
  ChosenColumns m_columns;
  std::unique_ptr<GelFile> m_gelFile;
  std::unique_ptr<BlockUnits> m_units;  // units that are being parsed need it
  std::atomic<TextForm> m_textForm{TextForm::made};
  std::atomic<bool> m_isFileOver = false;  // what has been read of it beyond does not count
  std::deque<ReadEvent> m_events;          // of accepted units

  std::uint64_t m_rowsExpected = 0;  // of all files; 0: unknown, and progress counts files
  std::uint64_t m_rowsOfFilesDone = 0;
  std::atomic<float> m_fractionDone{0.0f};
  long long m_blocksRead = 0;
  std::atomic<long long> m_blocksSkipped{0};  // by the block filter, in readUnit()
};

}  // namespace kelvarin

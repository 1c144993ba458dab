// Opens, fills and closes the files of one writeColumnarGel, one at a time or several.
//
// OutputTable removes or replaces previous files. Used by ColumnarWrite.
// Threads: the engine's; a full disk is asked about on the writers' threads.
// Errors: logged here, and the run is marked as failed.
#pragma once

#include <memory>

#include "columnar/actions/output_table.h"
#include "columnar/actions/write_settings.h"
#include "host/contract/claimed_names.h"

namespace kelvarin {

class OutputFiles {
 public:
  using Table = std::unique_ptr<OutputTable>;

  // The references outlive this object.
  OutputFiles(ActionItem& action, const WriteColumnarSettings& settings,
              QHash<QString, int> columnSets, ClaimedNames& names, const Pause& pause)
      : m_action(action),
        m_settings(settings),
        m_columnSets(std::move(columnSets)),
        m_names(names),
        m_pause(pause) {}

  // Whether a file can hold such a table; what is there is not touched. False: logged.
  [[nodiscard]] bool canHold(const OneRow& columns, const QString& file) const;
  // Null: it could not be opened, or the run has stopped while waiting.
  Table open(const QString& file);
  // A table that fails is destroyed.
  [[nodiscard]] bool write(Table& table, const OneRow& row);
  // After the first row of the table.
  [[nodiscard]] bool write(Table& table, const RowBatch& batch);
  bool hasOpened() const { return m_hasOpened; }
  // With the state of the run.
  bool close(Table& table);
  // Without a row: removes the table that is there.
  void removePrevious(const QString& file);

  void logError(const QString& text) const;

 private:
  bool dropFailed(Table& table);
  bool openWriter(OutputTable& table, const QString& name);
  bool wait(const QString& file, const std::function<Attempt()>& attempt) const;
  void report(const WriteFailure& failure, const QString& file) const;

  ActionItem& m_action;
  const WriteColumnarSettings& m_settings;
  const QHash<QString, int> m_columnSets;
  ClaimedNames& m_names;
  const Pause& m_pause;
  bool m_hasOpened = false;
};

// Equal for main files that exclude each other: their paths are equal, or their side files.
QString nameForSplit(const QString& file);

}  // namespace kelvarin

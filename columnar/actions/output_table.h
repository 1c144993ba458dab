// One table that is being written, and the previous table that it replaces at once or at the end.
//
// A table that replaces another at the end has other names while it is written, and gets its own by
// an exchange that no kill can leave half done (columnar/files/table_exchange.h). It is removed
// when it does not end normally. Otherwise the previous table is removed when the new one begins.
// Used by OutputFiles.
// Threads: the engine's; `ask` is called on the writer's threads.
// Errors: Attempt; logged here, and the run is marked as failed.
#pragma once

#include "columnar/actions/previous_file.h"
#include "columnar/writer/columnar_hd_writer.h"

namespace kelvarin {

class OutputTable {
 public:
  OutputTable(ActionItem& action, QString file, bool isReplacedAtEnd, AskAboutFullDisk ask);
  ~OutputTable();
  OutputTable(const OutputTable&) = delete;
  OutputTable& operator=(const OutputTable&) = delete;

  ColumnarHDWriter& writer() { return m_writer; }
  const QString& file() const { return m_file; }

  // Removes the previous files and opens the writer by `openWriter`, which gets the name to open.
  Attempt open(const std::function<bool(const QString& name)>& openWriter);
  // Finishes the file with the run's state. False: the writer has the failure.
  [[nodiscard]] bool finish(GlobalParameters::RunningState state);
  // After finish(): replaces the previous table when this one is whole.
  Attempt replacePrevious();

 private:
  void discard();
  void releaseLock();

  ActionItem& m_action;
  const QString m_file;
  const std::string m_path;
  const bool m_isReplacedAtEnd;
  const std::string m_writtenPath;  // m_path, or that of the table that replaces it
  ColumnarHDWriter m_writer;
  int m_lock = -1;  // keeps the writer's lock until the files have their names
  bool m_isWhole = false;
  bool m_isUnderItsName = false;
};

// Removes a table, when nobody is writing it.
Attempt removePreviousTable(ActionItem& action, const QString& file);

}  // namespace kelvarin

#include "columnar/actions/table_salvage.h"

#include <algorithm>

#include "columnar/actions/messages.h"
#include "columnar/actions/opened_table.h"
#include "columnar/actions/system_paths.h"
#include "columnar/files/folder_lock.h"
#include "columnar/files/table_files.h"
#include "columnar/reader/stored_order.h"
#include "columnar/writer/columnar_hd_writer.h"

namespace kelvarin {

namespace {

using RunningState = GlobalParameters::RunningState;

PinOutMetaData columnsOf(const GelFile& file, const std::vector<std::size_t>& columns) {
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const std::size_t column : columns) {
    names += QString::fromStdString(file.column(column).name);
    metas += file.meta(column);
  }
  PinOutMetaData metaData;
  metaData.setNames(names);
  metaData.setMetas(metas);
  metaData.setSortOrder(storedOrder(file, columns));
  return metaData;
}

// The new table while it is written: its writer, and its files until it is whole.
class NewTable {
 public:
  explicit NewTable(const QString& file) : m_file(file) {}
  ~NewTable() {
    if (m_isCreated && !m_isWhole) {
      const std::string path = systemPath(m_file);
      const FolderLock folder(path);
      m_writer.reset();
      (void)removeUnfinishedTable(path);
    }
  }
  NewTable(const NewTable&) = delete;
  NewTable& operator=(const NewTable&) = delete;

  // The error says why it cannot be.
  Status<QString> create(const GelFile& source, const std::vector<std::size_t>& columns) {
    const std::string path = systemPath(m_file);
    const FolderLock folder(path);
    if (!folder.isHeld()) {
      return Failure{columnar_messages::folderInUse(m_file)};
    }
    if (isSomethingThere(path) || isSomethingThere(journalFile(path)) ||
        !sideFileNamesOf(path).empty()) {
      return Failure{columnar_messages::salvageNameTaken(m_file)};
    }
    QHash<QString, int> sets;
    for (const std::size_t column : columns) {
      sets.insert(QString::fromStdString(source.column(column).name),
                  source.column(column).columnSet);
    }
    m_isCreated =
        m_writer.openHD(m_file, static_cast<int>(source.rowsInBlock()), sets, &m_parameters, 0);
    PinOutMetaData metaData = columnsOf(source, columns);
    const OneRow row(&metaData);
    return m_isCreated && m_writer.layOut(&row) ? Status<QString>(Done{}) : Failure{failureText()};
  }
  Status<QString> append(const RowBatch& batch) {
    return m_writer.writeToHD(batch, 0, batch.rowCount()) ? Status<QString>(Done{})
                                                          : Failure{failureText()};
  }
  Status<QString> finish() {
    m_isWhole = m_writer.closeHD(RunningState::endedNormally);
    return m_isWhole ? Status<QString>(Done{}) : Failure{failureText()};
  }

 private:
  QString failureText() const {
    const WriteFailure failure = m_writer.failure();
    if (failure.kind == WriteFailure::Kind::tooLarge ||
        failure.kind == WriteFailure::Kind::noColumns) {
      return columnar_messages::salvageTooLarge(m_file);
    }
    return columnar_messages::notWritten(m_file, failure.reason);
  }

  const QString m_file;
  GlobalParameters m_parameters;
  ColumnarHDWriter m_writer;
  bool m_isCreated = false;
  bool m_isWhole = false;
};

}  // namespace

Result<RecoveryOutcome, QString> salvageTable(const QString& damaged, const QString& newFile,
                                              const std::function<void(std::uint64_t)>& progress,
                                              const std::function<bool()>& isStopped) {
  const auto file = openTable(damaged);
  if (!file) {
    return Failure{file.error()};
  }
  const auto recovery = TableRecovery::open(**file);
  if (!recovery) {
    return Failure{columnar_messages::sideFileNeeded(shownPath(recovery.error()))};
  }
  (*recovery)->stopWhen(isStopped);
  const std::vector<std::size_t> columns = (*file)->columnsInRowOrder();
  NewTable table(newFile);
  if (const Status<QString> created = table.create(**file, columns); !created) {
    return Failure{created.error()};
  }
  while (!isStopped()) {
    const ReadEvent event = (*recovery)->next();
    if (event.kind == ReadEvent::Kind::noMemory) {
      return Failure{columnar_messages::noMemory(damaged, (*file)->rowsInBlock(), columns.size())};
    }
    if (event.kind != ReadEvent::Kind::rows) {
      break;
    }
    if (const Status<QString> appended = table.append(*event.batch); !appended) {
      return Failure{appended.error()};
    }
    progress((*recovery)->outcome().rows);
  }
  const RecoveryOutcome outcome = (*recovery)->outcome();
  if (isStopped() || outcome.rows == 0) {
    return isStopped() ? RecoveryOutcome{} : outcome;
  }
  if (const Status<QString> finished = table.finish(); !finished) {
    return Failure{finished.error()};
  }
  return outcome;
}

}  // namespace kelvarin

#include "columnar/actions/columnar_write.h"

#include <QDir>
#include <QFileInfo>

#include "columnar/actions/messages.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"
#include "host/contract/missing_column.h"
#include "host/contract/text_operations.h"

namespace kelvarin {

namespace {

using Split = WriteColumnarSettings::Split;

constexpr std::uint64_t kMebibyte = 1 << 20;

QHash<QString, int> columnSetsFor(const ActionItem& action, const OneRow& columns,
                                  WriteColumnarSettings::ColumnSets kind,
                                  const ListedColumnSets& listed) {
  QHash<QString, int> sets;
  switch (kind) {
    case WriteColumnarSettings::ColumnSets::one:
      break;
    case WriteColumnarSettings::ColumnSets::listed:
      for (const auto& [name, set] : listed) {
        sets[myTrim(action.expandString(name))] = set;
      }
      break;
    case WriteColumnarSettings::ColumnSets::oneForEachColumn:
      for (int i = 0; i < columns.sz(); ++i) {
        sets[myTrim(columns.colName(i))] = i;
      }
      break;
  }
  return sets;
}

}  // namespace

ColumnarWrite::ColumnarWrite(ActionItem& action, const WriteColumnarSettings& settings,
                             const ListedColumnSets& listedSets, ClaimedNames& names,
                             const Pause& pause)
    : m_action(action),
      m_settings(settings),
      m_listedSets(listedSets),
      m_names(names),
      m_pause(pause),
      m_file(action.expandOutputFile(settings.file, QString())) {}

bool ColumnarWrite::plan(const OneRow& columns) {
  m_row.copyFrom(&columns);
  m_files.emplace(m_action, m_settings,
                  columnSetsFor(m_action, columns, m_settings.columnSets(), m_listedSets), m_names,
                  m_pause);
  if (m_file.isEmpty()) {
    m_files->logError(columnar_messages::noFilename());
    return false;
  }
  if (m_settings.rowsInBlock < 1) {
    m_files->logError(columnar_messages::noRowsInBlock(logName(), m_settings.rowsInBlock));
    return false;
  }
  if (!m_settings.writeAllRows) {
    const QString name = m_action.expandString(m_settings.testColumn);
    const int column = columns.getIndexOfColumn(name);
    if (column < 0) {
      m_files->logError(columnar_messages::testColumnMissing(logName(), name));
      logExplanation(missingColumnHint(name, columns.getColNamesDeep()));
      return false;
    }
    m_test.emplace(columns, column, m_action.expandString(m_settings.testValue));
  }
  return planSplit(columns) && m_files->canHold(columns, m_file);
}

bool ColumnarWrite::planSplit(const OneRow& columns) {
  switch (m_settings.splitKind()) {
    case Split::none:
      m_write = &ColumnarWrite::writeInOneFile;
      m_takesBatches = !m_test;
      return true;
    case Split::bySize:
      m_write = &ColumnarWrite::writeBySize;
      return true;
    case Split::byValue:
      m_write = &ColumnarWrite::writeByValue;
      return planSplitByValue(columns) && planNaming();
  }
  return false;
}

bool ColumnarWrite::planSplitByValue(const OneRow& columns) {
  const QString name = m_action.expandString(m_settings.splitColumn);
  m_splitColumn = columns.getIndexOfColumn(name);
  if (m_splitColumn < 0) {
    m_files->logError(columnar_messages::splitColumnMissing(logName(), name));
    logExplanation(missingColumnHint(name, columns.getColNamesDeep()));
    return false;
  }
  m_isSortedOnSplit = isSortedOn(columns, m_splitColumn);
  if (!m_isSortedOnSplit) {
    MainUI::addLog(LogLevel::warning, columnar_messages::splitNotSorted());
  }
  return true;
}

bool ColumnarWrite::planNaming() {
  if (!m_settings.advancedNaming) {
    return true;
  }
  m_naming.emplace();
  const auto status = m_naming->compile(m_settings.file, m_action);
  if (!status) {
    logNamingError(status.error());
    return false;
  }
  return true;
}

bool ColumnarWrite::write(const OneRow& row) {
  if (m_test && !m_test->passes(row)) {
    return true;
  }
  return (this->*m_write)(row);
}

bool ColumnarWrite::write(const RowBatchPointer& batch) {
  return m_takesBatches ? m_files->write(m_table, *batch) : writeEachRow(batch);
}

bool ColumnarWrite::writeEachRow(const RowBatchPointer& batch) {
  m_rows.start(batch);
  while (m_rows.rowsLeft() > 0) {
    m_rows.take(m_row.getAllColForWrite());
    if (!write(m_row)) {
      return false;
    }
  }
  m_rows.clear();
  return true;
}

bool ColumnarWrite::writeInOneFile(const OneRow& row) {
  if (m_table == nullptr) [[unlikely]] {
    m_table = m_files->open(m_file);
    if (m_table == nullptr) {
      return false;
    }
  }
  return m_files->write(m_table, row);
}

// A file ends with the first block before which its blocks are large enough.
bool ColumnarWrite::writeBySize(const OneRow& row) {
  if (m_table == nullptr) {
    m_table = m_files->open(insertedBeforeExtension(m_file, segmentText(m_segment++)));
    if (m_table == nullptr) {
      return false;
    }
  }
  if (!m_files->write(m_table, row)) {
    return false;
  }
  if (!m_table->writer().isAtBlockBegin()) [[likely]] {
    return true;
  }
  const auto limit = static_cast<std::uint64_t>(std::max(m_settings.segmentSize.value, 0));
  return m_table->writer().sizeBeforeLastBlock() < limit * kMebibyte || m_files->close(m_table);
}

bool ColumnarWrite::writeByValue(const OneRow& row) {
  const std::string_view mark =
      splitMark(row.getMetaType(m_splitColumn), row.getAllColForRead()[m_splitColumn]);
  if (m_splitValue != mark) {
    m_splitValue = mark;
    if (!changeSplit(row)) {
      return false;
    }
  }
  return m_files->write(*m_currentSplit, row);
}

// Opens or continues the file of the current value. A sorted table needs one file at a time.
bool ColumnarWrite::changeSplit(const OneRow& row) {
  if (!m_isSortedOnSplit) {
    m_currentSplit = &m_openSplits[*m_splitValue];
    if (*m_currentSplit != nullptr) {
      return true;
    }
  } else {
    m_currentSplit = &m_table;
    if (!m_files->close(m_table)) {
      return false;
    }
  }
  const auto file = splitFile(row);
  if (!file) {
    return false;
  }
  *m_currentSplit = m_files->open(*file);
  return *m_currentSplit != nullptr;
}

std::optional<QString> ColumnarWrite::splitFile(const OneRow& row) {
  const QString text = splitNameText(row, m_splitColumn);
  QString file = insertedBeforeExtension(m_file, text);
  if (m_naming) {
    const auto name = m_naming->name(text);
    if (!name) {
      logNamingError(name.error());
      return std::nullopt;
    }
    if (name->isEmpty()) {
      m_files->logError(columnar_messages::noFilename());
      return std::nullopt;
    }
    file = QDir::cleanPath(QDir(m_action.globalParameters()->dataDirWrite()).filePath(*name));
  }
  const QString shown = shownSplitValue(row, m_splitColumn);
  const SplitFiles::Entry* known =
      m_splitFiles.enter(nameForSplit(file), {*m_splitValue, shown, file});
  if (known != nullptr) {
    if (known->mark == *m_splitValue) {
      m_files->logError(columnar_messages::splitValueReturns(file, text));
    } else {
      const auto message = known->file == file ? columnar_messages::splitNamesMeet
                                               : columnar_messages::splitSideFilesMeet;
      m_files->logError(message(file, known->shown, shown));
    }
    return std::nullopt;
  }
  return file;
}

// Removes or keeps the file of an earlier run when no row has been written.
void ColumnarWrite::endOfRows() {
  const bool isNormalEnd = m_action.run() == nullptr || m_action.run()->isRunning();
  const bool hasWritten = m_files && m_files->hasOpened();
  if (hasWritten || !isNormalEnd || m_file.isEmpty() || m_settings.splitKind() == Split::byValue) {
    return;
  }
  const QString file = m_settings.splitKind() == Split::none
                           ? m_file
                           : insertedBeforeExtension(m_file, segmentText(0));
  if (m_settings.alwaysDelete) {
    OutputFiles(m_action, m_settings, QHash<QString, int>(), m_names, m_pause).removePrevious(file);
  } else if (!m_settings.replaceAtEnd && QFileInfo::exists(file)) {
    MainUI::addLog(LogLevel::warning, columnar_messages::oldFileStays(file));
  }
}

bool ColumnarWrite::end() {
  bool isStored = true;
  if (m_files) {
    isStored = m_files->close(m_table);
    for (auto& [value, table] : m_openSplits) {
      isStored = m_files->close(table) && isStored;
    }
  }
  m_openSplits.clear();
  return isStored;
}

void ColumnarWrite::logNamingError(const NamingExpressions::Error& error) const {
  m_files->logError(columnar_messages::namingFailed(logName(), error.expression, error.reason));
}

}  // namespace kelvarin

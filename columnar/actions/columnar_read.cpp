#include "columnar/actions/columnar_read.h"

#include <algorithm>
#include <iterator>

#include <QFile>

#include "columnar/actions/claimed_tables.h"
#include "columnar/actions/file_list.h"
#include "columnar/actions/messages.h"
#include "columnar/actions/system_paths.h"
#include "columnar/reader/stored_order.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"
#include "host/files/file_hints.h"

namespace kelvarin {

namespace {

void warn(const QString& line) {
  MainUI::addLog(LogLevel::warning, line);
}

}  // namespace

ColumnarRead::ColumnarRead(ActionItem& action, const ReadColumnarSettings& settings,
                           const BlockFilter& filter, const QStringList& columnsToRead,
                           const TablePart& part, ClaimedNames& names, Pause pause)
    : m_action(action),
      m_settings(settings),
      m_columnsToRead(columnsToRead),
      m_part(part),
      m_names(names),
      m_pause(std::move(pause)),
      m_damage(settings.skipCorruptedBlocks),
      m_filter(filter) {}

bool ColumnarRead::begin() {
  if (!findNames()) {
    return false;
  }
  if (m_action.mustComputeFull() && m_settings.accurateProgressBar && m_files.size() > 1) {
    countRows();
  }
  return openNextFile();
}

bool ColumnarRead::findNames() {
  std::optional<QStringList> files = findFiles();
  if (!files) {
    m_action.failRun();
    return false;
  }
  m_files = std::move(*files);
  if (!claimFiles()) {
    m_action.failRun();
    return false;
  }
  std::optional<QStringList> columns;
  if (!findColumns(columns)) {
    m_action.failRun();
    return false;
  }
  m_choice.emplace(columns);
  return isRunning();
}

// Claims all files before the first is opened, so that no action of the graph replaces one that is
// still to be read.
bool ColumnarRead::claimFiles() {
  for (const QString& name : m_files) {
    const UsedFile file = usedTable(m_action.expandFile(name), FileUse::reads);
    if (const auto hindrance = m_names.claim(m_action, file)) {
      return fail(*hindrance);
    }
  }
  m_names.readsAreKnown();
  return true;
}

// In a check an input pin has no rows, and nothing is opened.
std::optional<QStringList> ColumnarRead::findFiles() {
  if (m_settings.fileNameFromPin) {
    return fileNamesFromPin(m_action, m_settings.abortIfMissing);
  }
  if (m_settings.fileName.isEmpty()) {
    MainUI::addLog(LogLevel::error, columnar_messages::noFileName());
    return std::nullopt;
  }
  return QStringList{m_settings.fileName};
}

bool ColumnarRead::findColumns(std::optional<QStringList>& names) {
  switch (m_settings.columns()) {
    case ReadColumnarSettings::Columns::all:
      return true;
    case ReadColumnarSettings::Columns::listed:
      names = m_columnsToRead;
      for (QString& name : *names) {
        name = m_action.expandString(name);
      }
      break;
    case ReadColumnarSettings::Columns::fromPin:
      names = columnNamesFromPin(m_action);
      if (!names) {
        return false;
      }
      break;
  }
  if (names->isEmpty()) {
    MainUI::addLog(LogLevel::error, columnar_messages::noColumnListed());
  }
  return !names->isEmpty();
}

// Files are counted instead when one of them cannot be opened yet.
void ColumnarRead::countRows() {
  for (const QString& name : m_files) {
    const auto file = GelFile::open(systemPath(m_action.expandFile(name)), IncompleteFiles::refuse);
    if (!file) {
      m_rowsExpected = 0;
      return;
    }
    m_rowsExpected += (*file)->rowCount();
  }
}

bool ColumnarRead::openNextFile() {
  closeFile();
  while (m_nextFile < m_files.size() && isRunning()) {
    const QString& name = m_files[m_nextFile];
    ++m_nextFile;
    switch (openFile(m_action.expandFile(name))) {
      case Opening::opened:
        return true;
      case Opening::skipped:
        reportProgress(0);
        break;
      case Opening::failed:
        m_action.failRun();
        return false;
    }
  }
  return false;
}

ColumnarRead::Opening ColumnarRead::openFile(const QString& path) {
  m_file = path;
  const int secondsToWait = m_action.mustComputeFull() ? m_settings.timeOutSeconds : 0;
  if (!waitForFile(m_action, path, secondsToWait, m_pause)) {
    return isRunning() ? missFile() : Opening::skipped;
  }
  const auto incomplete =
      m_settings.readIncompleteFile ? IncompleteFiles::accept : IncompleteFiles::refuse;
  auto file = GelFile::open(systemPath(path), incomplete);
  if (!file) {
    return failToOpen(file.error());
  }
  m_gelFile = std::move(*file);
  if (m_files.size() == 1 && m_settings.accurateProgressBar) {
    m_rowsExpected = m_gelFile->rowCount();
  }
  if (!m_gelFile->isComplete()) {
    warn(columnar_messages::incomplete(path));
    if (!m_gelFile->source().isBeingWritten()) {
      MainUI::addLog(LogLevel::information, columnar_messages::stoppedWriterAdvice(path));
    }
  }
  return chooseColumns() && prepareFilter() && startUnits() ? Opening::opened : Opening::failed;
}

ColumnarRead::Opening ColumnarRead::missFile() {
  if (!m_settings.abortIfMissing) {
    warn(columnar_messages::missingFileSkipped(m_file));
    explain(missingFileHint(m_file));
    return Opening::skipped;
  }
  const Opening refused = refuse(columnar_messages::missingFile(m_file));
  explain(missingFileHint(m_file));
  return refused;
}

void ColumnarRead::explain(const QString& hint) {
  if (!hint.isEmpty()) {
    logExplanation(hint);
  }
}

ColumnarRead::Opening ColumnarRead::failToOpen(const OpenFailure& failure) {
  switch (failure.problem) {
    case OpenFailure::Problem::cannotOpen:
      warn(columnar_messages::cannotOpenFile(m_file));
      if (m_settings.abortIfMissing) {
        return refuse(columnar_messages::cannotOpen(m_file));
      }
      warn(columnar_messages::cannotOpen(m_file));
      return Opening::skipped;
    case OpenFailure::Problem::incomplete:
      (void)refuse(columnar_messages::incompleteRefused(m_file));
      MainUI::addLog(LogLevel::information, columnar_messages::incompleteAdvice(m_file));
      return Opening::failed;
    case OpenFailure::Problem::exchangeDamaged:
      return refuse(columnar_messages::journalDamagedOnRead(
          m_file, QFile::decodeName(journalFile(systemPath(m_file)).c_str())));
    case OpenFailure::Problem::unreadable:
      break;
  }
  if (failure.isIncomplete) {
    warn(columnar_messages::incomplete(m_file));
  }
  const Opening refused = refuse(columnar_messages::unreadable(m_file));
  explain(foreignFormatHint(m_file, FileFormat::columnar));
  return refused;
}

ColumnarRead::Opening ColumnarRead::refuse(const QString& line) {
  MainUI::addLog(LogLevel::error, line);
  return Opening::failed;
}

bool ColumnarRead::fail(const QString& line) {
  MainUI::addLog(LogLevel::error, line);
  return false;
}

bool ColumnarRead::chooseColumns() {
  Result<ChosenColumns, MissingColumn> chosen = m_choice->choose(*m_gelFile);
  if (!chosen) {
    const MissingColumn& missing = chosen.error();
    return fail(columnar_messages::columnNotInFile(
        missing.name, missing.isMissingInFirstFile ? m_firstFile : m_file));
  }
  m_columns = std::move(*chosen);
  if (!m_isAnnounced) {
    m_firstFile = m_file;
    announceColumns();
  }
  return true;
}

void ColumnarRead::announceColumns() {
  QVector<QString> names = m_choice->names();
  QVector<MetaInfo> metas = m_choice->metas();
  if (m_part.hasRowNumbers()) {
    names += m_part.rowNumberColumn;
    metas += MetaInfo(MetaTypeColumn::number, 0);
  }
  OneRow* row = m_action.getOutputRowForOutputPin(0);
  row->setNumberOfColumns(static_cast<int>(names.size()));
  row->setColName(names);
  row->setMetaData(metas);
  // The rows of several files have no common order.
  const bool isOneFile = m_files.size() == 1;
  row->setSortInfos(isOneFile ? storedOrder(*m_gelFile, m_columns) : QVector<SortInfos>());
  m_action.announceColumnsOfOutputPin(0);
  m_isAnnounced = true;
}

bool ColumnarRead::prepareFilter() {
  if (!m_settings.filterRows) {
    return true;
  }
  if (!m_isFilterCompiled) {
    QString warning;
    const Status<QString> compiled = m_filter.compile(m_action, warning);
    if (!warning.isEmpty()) {
      warn(warning);
    }
    if (!compiled) {
      (void)fail(compiled.error());
      for (const QString& explanation : m_filter.explanations()) {
        logExplanation(explanation);
      }
      return false;
    }
    m_isFilterCompiled = true;
  }
  const Status<QString> bound = m_filter.bindTo(*m_gelFile);
  return bound || fail(bound.error());
}

bool ColumnarRead::startUnits() {
  BlockUnits::WantsBlock wantsBlock;
  if (m_settings.filterRows) {
    wantsBlock = [this](const GelFile& file, const BlockInfo& block) {
      const bool isWanted = m_filter.wantsBlock(file, block);
      m_blocksSkipped += isWanted ? 0 : 1;
      return isWanted;
    };
  }
  auto units = BlockUnits::open(*m_gelFile, m_columns, std::move(wantsBlock), m_part);
  if (!units) {
    return fail(columnar_messages::cannotOpenSideFile(
        QFile::decodeName(QByteArray::fromStdString(units.error()))));
  }
  if (m_action.mustComputeFull()) {
    m_units = std::move(*units);
    m_isFileOver = false;
  }
  return true;
}

void ColumnarRead::closeFile() {
  m_units.reset();
  if (m_gelFile) {
    m_rowsOfFilesDone += m_gelFile->rowCount();
    m_gelFile.reset();
  }
}

bool ColumnarRead::canReadUnits() const {
  return m_units && m_events.empty() && isRunning();
}

std::unique_ptr<BatchUnit> ColumnarRead::readUnit() {
  return m_isFileOver ? nullptr : m_units->next(m_textForm);
}

// Nothing of the file is on its way any more, since all units have been accepted.
bool ColumnarRead::readOn() {
  if (!m_isFileOver) {
    (void)take(m_units->end());
  }
  return isRunning() && openNextFile();
}

// Small blocks of one unit count together.
int ColumnarRead::maxUnitsAhead() const {
  constexpr std::size_t kMany = 1 << 20;
  const auto blocks = static_cast<std::size_t>(std::max(m_settings.blocksAhead, 0));
  return m_units ? static_cast<int>(std::min(blocks * m_units->unitsOfBlock(), kMany)) : 0;
}

RowBatchPointer ColumnarRead::accept(BlockUnit& unit) {
  if (m_isFileOver) {
    return nullptr;
  }
  const bool isNext = m_events.empty();
  std::move(unit.events().begin(), unit.events().end(), std::back_inserter(m_events));
  return isNext ? nextRows() : nullptr;
}

RowBatchPointer ColumnarRead::nextRows() {
  while (!m_events.empty() && isRunning()) {
    const ReadEvent event = std::move(m_events.front());
    m_events.pop_front();
    if (RowBatchPointer rows = take(event)) {
      return rows;
    }
  }
  return nullptr;
}

RowBatchPointer ColumnarRead::take(const ReadEvent& event) {
  switch (event.kind) {
    case ReadEvent::Kind::rows:
      reportProgress(event.firstRow);
      m_blocksRead += static_cast<long long>(event.blocks);
      return event.batch;
    case ReadEvent::Kind::corrupted:
      follow(m_damage.corrupted(m_file, event.firstRow, event.lastRow, event.cause));
      return nullptr;
    case ReadEvent::Kind::truncated:
      follow(m_damage.truncated(m_file, event.firstRow));
      return nullptr;
    case ReadEvent::Kind::noMemory:
      fail(columnar_messages::noMemory(m_file, m_gelFile->rowsInBlock(), m_columns.size()));
      follow(AfterDamage::stopRun);
      return nullptr;
    case ReadEvent::Kind::end:
      if (event.cause == ReadStatus::incomplete) {
        MainUI::addLog(LogLevel::information, columnar_messages::stillWritten(m_file));
      }
      return nullptr;
  }
  return nullptr;
}

// Units of the file may still be under way, so it is closed later.
void ColumnarRead::follow(AfterDamage decision) {
  if (decision == AfterDamage::goOn) {
    return;
  }
  m_isFileOver = true;
  m_events.clear();
  if (decision == AfterDamage::stopRun) {
    m_action.failRun();
  }
}

void ColumnarRead::reportProgress(std::uint64_t rowsOfFile) {
  double fraction = 0.0;
  if (m_rowsExpected > 0) {
    fraction =
        static_cast<double>(m_rowsOfFilesDone + rowsOfFile) / static_cast<double>(m_rowsExpected);
  } else {
    fraction = static_cast<double>(std::max<qsizetype>(m_nextFile - 1, 0)) /
               static_cast<double>(m_files.size());
  }
  m_fractionDone = static_cast<float>(std::min(fraction, 1.0));
}

bool ColumnarRead::isRunning() const {
  return m_action.run() == nullptr || m_action.run()->isRunning();
}

}  // namespace kelvarin

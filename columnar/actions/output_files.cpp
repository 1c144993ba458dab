#include "columnar/actions/output_files.h"

#include <QDir>
#include <QFileInfo>

#include "columnar/actions/claimed_tables.h"
#include "columnar/actions/messages.h"
#include "columnar/format/file_names.h"
#include "host/contract/host_session.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

using RunningState = GlobalParameters::RunningState;

RunningState stateOf(const ActionItem& action) {
  return action.run() == nullptr ? RunningState::endedNormally : action.run()->status.load();
}

// Asks the host, unless the run has failed or was stopped meanwhile.
AskAboutFullDisk askOnBehalfOf(const ActionItem& action) {
  return [&action, session = HostSession::current()](const QString& file, int missingBytes) {
    const RunningState state = stateOf(action);
    if (state != RunningState::running && state != RunningState::endedNormally) {
      return false;
    }
    const HostSession::Scope scope(session);
    const CurrentAction current(&action);
    return MainUI::displayOutOfDiskSpace(file, missingBytes, true);
  };
}

}  // namespace

bool OutputFiles::canHold(const OneRow& columns, const QString& file) const {
  const auto layout = layOutTable(columns, m_settings.rowsInBlock, m_columnSets,
                                  m_action.globalParameters()->blockMemoryBudget());
  if (!layout) {
    report({.kind = layout.error(), .file = {}, .reason = {}}, file);
  }
  return static_cast<bool>(layout);
}

OutputFiles::Table OutputFiles::open(const QString& file) {
  if (m_settings.checkNameCollision) {
    if (const auto hindrance = m_names.claim(m_action, usedTable(file, FileUse::writes))) {
      logError(*hindrance);
      return nullptr;
    }
  }
  if (m_settings.createDirectory) {
    QDir().mkpath(QFileInfo(file).path());
  }
  // The previous file may be one that a reader of the graph will still ask for.
  const bool isReplacedAtEnd = m_settings.replaceAtEnd || ClaimedNames::areReadsAwaited();
  auto table =
      std::make_unique<OutputTable>(m_action, file, isReplacedAtEnd, askOnBehalfOf(m_action));
  const auto openTable = [&] {
    return table->open([&](const QString& name) { return openWriter(*table, name); });
  };
  if (!wait(file, openTable)) {
    return nullptr;
  }
  m_hasOpened = true;
  return table;
}

bool OutputFiles::openWriter(OutputTable& table, const QString& name) {
  ColumnarHDWriter& writer = table.writer();
  if (!writer.openHD(name, m_settings.rowsInBlock, m_columnSets, m_action.globalParameters(),
                     m_settings.threadCount)) {
    report(writer.failure(), table.file());
    return false;
  }
  return true;
}

bool OutputFiles::write(Table& table, const OneRow& row) {
  return table->writer().writeToHD(&row) || dropFailed(table);
}

bool OutputFiles::write(Table& table, const RowBatch& batch) {
  return table->writer().writeToHD(batch, 0, batch.rowCount()) || dropFailed(table);
}

bool OutputFiles::dropFailed(Table& table) {
  report(table->writer().failure(), table->file());
  table.reset();
  return false;
}

bool OutputFiles::close(Table& table) {
  if (table == nullptr) {
    return true;
  }
  bool isStored = table->finish(stateOf(m_action));
  if (!isStored) {
    report(table->writer().failure(), table->file());
  } else {
    isStored = wait(table->file(), [&] { return table->replacePrevious(); });
  }
  table.reset();
  return isStored;
}

void OutputFiles::removePrevious(const QString& file) {
  (void)wait(file, [&] { return removePreviousTable(m_action, file); });
}

bool OutputFiles::wait(const QString& file, const std::function<Attempt()>& attempt) const {
  return untilUnlocked(m_action, file, m_settings.deleteTimeOutSeconds, m_pause, attempt);
}

void OutputFiles::logError(const QString& text) const {
  MainUI::addLog(LogLevel::error, text);
  m_action.failRun();
}

void OutputFiles::report(const WriteFailure& failure, const QString& file) const {
  switch (failure.kind) {
    case WriteFailure::Kind::none:
      return;
    case WriteFailure::Kind::noColumns:
      return logError(columnar_messages::noColumnsToWrite(file));
    case WriteFailure::Kind::tooLarge:
      return logError(columnar_messages::tooLarge());
    case WriteFailure::Kind::cannotOpen:
      logError(columnar_messages::cannotOpenForWrite(failure.file));
      break;
    case WriteFailure::Kind::cannotWrite:
      logError(columnar_messages::cannotWriteFile(failure.file));
      break;
  }
  logExplanation(columnar_messages::systemReason(failure.file, failure.reason));
}

QString nameForSplit(const QString& file) {
  const QString path = QDir::cleanPath(QFileInfo(file).absoluteFilePath());
  return QString::fromStdString(sideFileName(path.toStdString(), 0));
}

}  // namespace kelvarin

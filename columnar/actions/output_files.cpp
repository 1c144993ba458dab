#include "columnar/actions/output_files.h"

#include <QDir>
#include <QFileInfo>

#include "columnar/actions/previous_file.h"
#include "columnar/actions/write_messages.h"
#include "columnar/format/file_names.h"
#include "host/contract/host_services.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

using RunningState = GlobalParameters::RunningState;

RunningState stateOf(const ActionItem& action) {
  return action.run() == nullptr ? RunningState::endedNormally : action.run()->status.load();
}

// Asks the host, unless the run has come to a bad end meanwhile.
AskAboutFullDisk askOnBehalfOf(const ActionItem& action) {
  return [&action](const QString& file, int missingBytes) {
    const RunningState state = stateOf(action);
    if (state != RunningState::running && state != RunningState::endedNormally) {
      return false;
    }
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

OutputFiles::Writer OutputFiles::open(const QString& file) {
  if (m_settings.checkNameCollision && !claimFiles(m_names, m_action.globalParameters(), file)) {
    logError(QString::fromLatin1(messages::kNameTaken).arg(file));
    return nullptr;
  }
  if (m_settings.createDirectory) {
    QDir().mkpath(QFileInfo(file).path());
  }
  if (removePreviousFile(m_action, file, m_settings.deleteTimeOutSeconds, m_pause) !=
      Removal::done) {
    return nullptr;
  }
  auto writer = std::make_unique<ColumnarHDWriter>(askOnBehalfOf(m_action));
  if (!writer->openHD(file, m_settings.rowsInBlock, m_columnSets, m_action.globalParameters(),
                      m_settings.threadCount)) {
    report(writer->failure(), file);
    return nullptr;
  }
  m_hasOpened = true;
  return writer;
}

bool OutputFiles::write(Writer& writer, const OneRow& row) {
  return writer->writeToHD(&row) || dropFailed(writer);
}

bool OutputFiles::write(Writer& writer, const ColumnsInHand& rows, std::size_t count) {
  return writer->writeToHD(rows, count) || dropFailed(writer);
}

bool OutputFiles::dropFailed(Writer& writer) {
  report(writer->failure(), writer->fileName());
  writer.reset();
  return false;
}

bool OutputFiles::close(Writer& writer) {
  if (writer == nullptr) {
    return true;
  }
  const QString file = writer->fileName();
  const bool isStored = writer->closeHD(stateOf(m_action));
  if (!isStored) {
    report(writer->failure(), file);
  }
  writer.reset();
  return isStored;
}

void OutputFiles::removePrevious(const QString& file) {
  (void)removePreviousFile(m_action, file, m_settings.deleteTimeOutSeconds, m_pause);
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
      return logError(QString::fromLatin1(messages::kNoColumnsToWrite).arg(file));
    case WriteFailure::Kind::tooLarge:
      return logError(QString::fromLatin1(messages::kTooLarge));
    case WriteFailure::Kind::cannotOpen:
      logError(QString::fromLatin1(messages::kCannotOpenForWrite).arg(failure.file));
      break;
    case WriteFailure::Kind::cannotWrite:
      logError(QString::fromLatin1(messages::kCannotWriteFile).arg(failure.file));
      break;
  }
  logExplanation(QString::fromLatin1(messages::kSystemReason).arg(failure.file, failure.reason));
}

QString nameForClaim(const QString& file) {
  return QString::fromStdString(sideFileName(ClaimedNames::nameOf(file).toStdString(), 0));
}

bool claimFiles(ClaimedNames& names, const GlobalParameters* graph, const QString& file) {
  return names.claim(graph, nameForClaim(file)) && names.claim(graph, ClaimedNames::nameOf(file));
}

}  // namespace kelvarin

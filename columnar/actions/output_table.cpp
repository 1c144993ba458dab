#include "columnar/actions/output_table.h"

#include <cerrno>

#include <unistd.h>

#include "columnar/actions/messages.h"
#include "columnar/actions/system_paths.h"
#include "columnar/files/folder_lock.h"
#include "columnar/files/table_exchange.h"
#include "columnar/files/table_files.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

using RunningState = GlobalParameters::RunningState;

void logErrorOf(ActionItem& action, const QString& text) {
  MainUI::addLog(LogLevel::error, text);
  action.failRun();
}

// Finishes an exchange that was begun. The folder is locked.
Attempt settleExchange(ActionItem& action, const QString& file) {
  const std::string path = systemPath(file);
  switch (finishExchange(path)) {
    case OpenExchange::none:
      return Attempt::done;
    case OpenExchange::unfinished:
      logErrorOf(action, columnar_messages::exchangeUnfinished(file, qt_error_string(errno)));
      return Attempt::failed;
    case OpenExchange::damaged:
      logErrorOf(action,
                 columnar_messages::journalDamagedOnWrite(file, shownPath(journalFile(path))));
      return Attempt::failed;
  }
  return Attempt::failed;
}

// True, and logged: removing the table at `file` would remove side files of another one.
bool isRefusedForAnother(ActionItem& action, const QString& file) {
  const std::string other = tableSharingSideFiles(systemPath(file));
  if (!other.empty()) {
    logErrorOf(action, columnar_messages::sideFilesOfAnother(file, shownPath(other)));
  }
  return !other.empty();
}

bool isInUse(const std::string& path) {
  return !isReplaceable(path) || isBeingWritten(path) || isBeingWritten(replacementFile(path));
}

// The first steps before the table at `file` is removed or replaced.
Attempt prepareRemoval(ActionItem& action, const QString& file, const FolderLock& folder) {
  if (!folder.isHeld()) {
    return Attempt::inUse;
  }
  if (const Attempt settled = settleExchange(action, file); settled != Attempt::done) {
    return settled;
  }
  return isInUse(systemPath(file)) ? Attempt::inUse : Attempt::done;
}

}  // namespace

OutputTable::OutputTable(ActionItem& action, QString file, bool isReplacedAtEnd,
                         AskAboutFullDisk ask)
    : m_action(action),
      m_file(std::move(file)),
      m_path(systemPath(m_file)),
      m_isReplacedAtEnd(isReplacedAtEnd),
      m_writtenPath(isReplacedAtEnd ? replacementFile(m_path) : m_path),
      m_writer(std::move(ask)) {}

OutputTable::~OutputTable() {
  if (m_writer.isOpen()) {
    (void)finish(RunningState::failed);
  }
  if (m_isReplacedAtEnd && m_lock >= 0 && !m_isUnderItsName) {
    discard();
  }
  releaseLock();
}

Attempt OutputTable::open(const std::function<bool(const QString& name)>& openWriter) {
  const FolderLock folder(m_path);
  if (const Attempt ready = prepareRemoval(m_action, m_file, folder); ready != Attempt::done) {
    return ready;
  }
  if (isRefusedForAnother(m_action, m_file)) {
    return Attempt::failed;
  }
  if (isForeignFile(m_file)) {
    MainUI::addLog(LogLevel::warning, columnar_messages::foreignFile(m_file));
  }
  const bool isFree = removeUnfinishedTable(replacementFile(m_path)) &&
                      (m_isReplacedAtEnd || !isSomethingThere(m_path) || removeTable(m_path));
  if (!isFree) {
    return Attempt::inUse;
  }
  return openWriter(shownPath(m_writtenPath)) ? Attempt::done : Attempt::failed;
}

bool OutputTable::finish(RunningState state) {
  if (m_isReplacedAtEnd) {
    m_lock = m_writer.keepLock();
  }
  const bool isNormalEnd = state == RunningState::endedNormally || state == RunningState::running;
  const bool isStored = m_writer.closeHD(state);
  m_isWhole = isStored && isNormalEnd;
  return isStored;
}

Attempt OutputTable::replacePrevious() {
  if (!m_isReplacedAtEnd || !m_isWhole) {
    return Attempt::done;
  }
  const FolderLock folder(m_path);
  if (!folder.isHeld() || !isReplaceable(m_path) || isBeingWritten(m_path)) {
    return Attempt::inUse;
  }
  if (!exchangeTable(m_path)) {
    const QString reason = qt_error_string(errno);
    m_isUnderItsName = isSomethingThere(journalFile(m_path));
    logErrorOf(m_action, m_isUnderItsName ? columnar_messages::exchangeLeft(m_file, reason)
                                          : columnar_messages::notExchanged(m_file, reason));
    return Attempt::failed;
  }
  m_isUnderItsName = true;
  return Attempt::done;
}

// Removes the files, unless another process has begun to write such a table.
void OutputTable::discard() {
  const FolderLock folder(m_path);
  releaseLock();
  if (!isBeingWritten(m_writtenPath)) {
    (void)removeUnfinishedTable(m_writtenPath);
  }
}

void OutputTable::releaseLock() {
  if (m_lock >= 0) {
    ::close(m_lock);
    m_lock = -1;
  }
}

Attempt removePreviousTable(ActionItem& action, const QString& file) {
  const std::string path = systemPath(file);
  const FolderLock folder(path);
  if (const Attempt ready = prepareRemoval(action, file, folder); ready != Attempt::done) {
    return ready;
  }
  if (isSomethingThere(path) && isRefusedForAnother(action, file)) {
    return Attempt::failed;
  }
  const bool isGone = removeUnfinishedTable(replacementFile(path)) &&
                      (!isSomethingThere(path) || removeTable(path));
  return isGone ? Attempt::done : Attempt::inUse;
}

}  // namespace kelvarin

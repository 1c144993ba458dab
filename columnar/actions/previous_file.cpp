#include "columnar/actions/previous_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "columnar/actions/write_messages.h"
#include "columnar/format/file_names.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

// A link to a file that is not there counts as well.
bool exists(const QString& file) {
  const QFileInfo info(file);
  return info.exists() || info.isSymLink();
}

// Folders and devices are not ours to remove.
bool canBePreviousFile(const QString& file) {
  const QFileInfo info(file);
  return info.isFile() || info.isSymLink();
}

bool isGone(const QString& file) {
  return !exists(file) || (canBePreviousFile(file) && QFile::remove(file)) || !exists(file);
}

bool isRunning(const ActionItem& action) {
  return action.run() == nullptr || action.run()->isRunning();
}

void removeSideFiles(const QString& mainFile) {
  const QFileInfo info(mainFile);
  const std::string name = mainFile.toStdString();
  const QString folder = mainFile.left(mainFile.size() - info.fileName().size());
  for (const QString& candidate :
       QDir(info.path()).entryList(QDir::Files | QDir::Hidden | QDir::System)) {
    const QString file = folder + candidate;
    if (isSideFileName(name, file.toStdString())) {
      QFile::remove(file);
    }
  }
}

// Asks again every second; the caller knows that the file is there.
Removal removeLockedFile(ActionItem& action, const QString& file, int seconds,
                         const Pause& pause) {
  MainUI::addLog(LogLevel::warning, QString::fromLatin1(messages::kPreviousLocked).arg(file));
  for (int attempt = 0; attempt < seconds; ++attempt) {
    if (!isRunning(action)) {
      return Removal::stopped;
    }
    pauseBetweenLooks(action, pause);
    if (!isRunning(action)) {
      return Removal::stopped;
    }
    if (isGone(file)) {
      MainUI::addLog(LogLevel::information, QString::fromLatin1(messages::kPreviousUnlocked));
      return Removal::done;
    }
  }
  MainUI::addLog(LogLevel::error, QString::fromLatin1(messages::kPreviousNotDeleted).arg(file));
  action.failRun();
  return Removal::failed;
}

}  // namespace

Removal removePreviousFile(ActionItem& action, const QString& mainFile, int seconds,
                           const Pause& pause) {
  if (!exists(mainFile)) {
    return Removal::done;
  }
  if (!isGone(mainFile)) {
    const Removal removal = removeLockedFile(action, mainFile, seconds, pause);
    if (removal != Removal::done) {
      return removal;
    }
  }
  removeSideFiles(mainFile);
  return Removal::done;
}

}  // namespace kelvarin

#include "columnar/actions/previous_file.h"

#include <QFile>
#include <QFileInfo>

#include "columnar/actions/write_messages.h"
#include "columnar/files/table_files.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

bool untilUnlocked(ActionItem& action, const QString& file, int seconds, const Pause& pause,
                   const std::function<Attempt()>& attempt) {
  Attempt outcome = attempt();
  if (outcome != Attempt::inUse) {
    return outcome == Attempt::done;
  }
  MainUI::addLog(LogLevel::warning, QString::fromLatin1(messages::kPreviousLocked).arg(file));
  for (int second = 0; second < seconds && outcome == Attempt::inUse; ++second) {
    pauseBetweenLooks(action, pause);
    if (!isRunGoingOn(action)) {
      return false;
    }
    outcome = attempt();
  }
  if (outcome == Attempt::done) {
    MainUI::addLog(LogLevel::information, QString::fromLatin1(messages::kPreviousUnlocked));
  } else if (outcome == Attempt::inUse) {
    MainUI::addLog(LogLevel::error, QString::fromLatin1(messages::kPreviousNotDeleted).arg(file));
    action.failRun();
  }
  return outcome == Attempt::done;
}

bool isForeignFile(const QString& file) {
  const QFileInfo info(file);
  return info.isFile() && info.size() > 0 &&
         !isColumnarFile(QFile::encodeName(file).toStdString());
}

}  // namespace kelvarin

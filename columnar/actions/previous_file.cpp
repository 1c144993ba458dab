#include "columnar/actions/previous_file.h"

#include <QFile>
#include <QFileInfo>

#include "columnar/actions/messages.h"
#include "columnar/files/table_files.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

bool untilUnlocked(ActionItem& action, const QString& file, int seconds, const Pause& pause,
                   const std::function<Attempt()>& attempt) {
  Attempt outcome = attempt();
  if (outcome != Attempt::inUse) {
    return outcome == Attempt::done;
  }
  MainUI::addLog(LogLevel::warning, columnar_messages::previousLocked(file));
  for (int second = 0; second < seconds && outcome == Attempt::inUse; ++second) {
    pauseBetweenLooks(action, pause);
    if (!isRunGoingOn(action)) {
      return false;
    }
    outcome = attempt();
  }
  if (outcome == Attempt::done) {
    MainUI::addLog(LogLevel::information, columnar_messages::previousUnlocked());
  } else if (outcome == Attempt::inUse) {
    MainUI::addLog(LogLevel::error, columnar_messages::previousNotDeleted(file));
    action.failRun();
  }
  return outcome == Attempt::done;
}

bool isForeignFile(const QString& file) {
  const QFileInfo info(file);
  return info.isFile() && info.size() > 0 && !isColumnarFile(QFile::encodeName(file).toStdString());
}

}  // namespace kelvarin

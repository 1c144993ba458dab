#include "columnar/actions/waiting.h"

#include <chrono>
#include <thread>

#include <QFile>

#include "columnar/actions/messages.h"
#include "columnar/files/table_exchange.h"
#include "columnar/files/table_files.h"
#include "host/contract/main_ui.h"
#include "host/files/read_file.h"

namespace kelvarin {

namespace {

constexpr int kMillisecondsBetweenLooks = 1000;
constexpr int kMillisecondsOfSlice = 100;  // a stopped run is noticed within one

// While a table is being replaced, its main file may be absent for a moment.
bool exists(const QString& file) {
  return QUBiFileInfo(file).exists() ||
         isSomethingThere(journalFile(QFile::encodeName(file).toStdString()));
}

}  // namespace

bool isRunGoingOn(const ActionItem& action) {
  using State = GlobalParameters::RunningState;
  const State state = action.run() == nullptr ? State::running : action.run()->status.load();
  return state == State::running || state == State::endedNormally;
}

void sleepFor(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void pauseBetweenLooks(const ActionItem& action, const Pause& pause) {
  for (int passed = 0; passed < kMillisecondsBetweenLooks && isRunGoingOn(action);
       passed += kMillisecondsOfSlice) {
    pause(kMillisecondsOfSlice);
  }
}

bool waitForFile(const ActionItem& action, const QString& file, int seconds, const Pause& pause) {
  if (exists(file) || seconds < 1) {
    return exists(file);
  }
  MainUI::addLog(LogLevel::warning, columnar_messages::waitingForFile(file));
  for (int look = 0; look < seconds && isRunGoingOn(action); ++look) {
    pauseBetweenLooks(action, pause);
    if (exists(file)) {
      return true;
    }
  }
  return false;
}

}  // namespace kelvarin

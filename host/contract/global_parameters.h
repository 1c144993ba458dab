// Per-graph settings and the record of a run that every action of the graph points to.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>

#include <QMap>
#include <QString>

#include "base/export.h"

namespace kelvarin {
class TaskPool;
}

class KELVARIN_CORE GlobalParameters {
 public:
  enum class RunningState { endedNormally = 0, running = 2, stoppedByUser = 3, failed = 5 };

  GlobalParameters() = default;

  // The folder that relative names of files to read and to write start from; the graph file's
  // folder unless set.
  QString workingDir() const { return m_workingDir; }
  void setWorkingDir(QString folder) { m_workingDir = folder; }
  QString dataDirRead() const { return m_dataDirRead.isEmpty() ? m_workingDir : m_dataDirRead; }
  void setDataDirRead(QString folder) { m_dataDirRead = folder; }
  QString dataDirWrite() const { return m_dataDirWrite.isEmpty() ? m_workingDir : m_dataDirWrite; }
  void setDataDirWrite(QString folder) { m_dataDirWrite = folder; }

  // The graph file's path, empty for a graph without one.
  QString graphFile() const { return m_graphFile; }
  void setGraphFile(QString path) { m_graphFile = path; }

  const QMap<QString, QString>& values() const { return m_values; }
  void setValue(const QString& name, const QString& value) { m_values[name] = value; }

  // Replaces every `${name}` by the parameter's value; an unknown name stays as it is and, when
  // asked for, the first one is stored in `unknownName`.
  QString expandString2(QString text, QString* unknownName = nullptr) const;
  // A path relative to the working folder where the file lies below it, else the path unchanged.
  QString contractFile(QString path) const;

  // Budget for one raw descriptor block of a columnar file, in MiB; never taken from the machine,
  // so that files do not depend on it.
  int blockMemoryBudget() const { return 16; }
  int threadCount() const;
  void setThreadCount(int count) { m_threadCount = count; }

  // What the clock says otherwise, for runs that are to be repeated bit for bit: the start of the
  // random numbers of actions that have none of their own, and the current time, in milliseconds
  // since 1970 (UTC).
  std::optional<std::uint32_t> randomSeed() const { return m_randomSeed; }
  void setRandomSeed(std::optional<std::uint32_t> seed) { m_randomSeed = seed; }
  std::optional<std::int64_t> currentTime() const { return m_currentTime; }
  void setCurrentTime(std::optional<std::int64_t> milliseconds) { m_currentTime = milliseconds; }

 private:
  QString m_workingDir;
  QString m_dataDirRead;
  QString m_dataDirWrite;
  QString m_graphFile;
  QMap<QString, QString> m_values;
  int m_threadCount = 0;  // 0: one for each processor that it may use
  std::optional<std::uint32_t> m_randomSeed;
  std::optional<std::int64_t> m_currentTime;
};

// One run of a graph. Actions read the status between rows and set it to `failed`; a signal handler
// sets it to `stoppedByUser`, an editor calls stop().
struct KELVARIN_CORE RunRecord {
  std::atomic<GlobalParameters::RunningState> status{GlobalParameters::RunningState::running};
  // False where a check asks for the columns only: sources announce their columns and give no row.
  bool mustComputeFull = true;
  // Actions that compute columns count the missing values in them for their report.
  bool countsValues = false;
  // Actions that go on after a row that failed report it: HostServices::rowRejected().
  bool reportsRejectedRows = false;
  // The number of the first row that comes from a source, for a run on the later rows of a table.
  long long firstRow = 0;
  // Carries out tasks of actions beside the engine thread, during the run; null: nothing does.
  kelvarin::TaskPool* tasks = nullptr;

  bool isRunning() const {
    return status.load(std::memory_order_relaxed) == GlobalParameters::RunningState::running;
  }
  bool isStoppedByUser() const {
    return status.load(std::memory_order_relaxed) == GlobalParameters::RunningState::stoppedByUser;
  }
  // A stop by the user is not overwritten.
  void fail() { finish(GlobalParameters::RunningState::failed); }
  // Neither a stop nor a failure is overwritten.
  void endNormally() { finish(GlobalParameters::RunningState::endedNormally); }

  // From any thread but in a signal handler: stops the run where it has not ended, and wakes
  // threads that wait inside actions.
  void stop();
  // For the engine: how those threads are woken, null at the end of the run.
  void setWaker(std::function<void()> wake);

 private:
  void finish(GlobalParameters::RunningState state) {
    auto expected = GlobalParameters::RunningState::running;
    status.compare_exchange_strong(expected, state);
  }

  std::mutex m_mutex;  // guards m_wake
  std::function<void()> m_wake;
};

// What the library offers to the graphs that it runs for a program: the program hears their log,
// and a full disk is waited for.
//
// Threads: any; the program's function is called by one at a time.
#pragma once

#include <mutex>
#include <stop_token>

#include <QSet>

#include "host/contract/host_services.h"
#include "include/kelvarin/kelvarin.h"

namespace kelvarin {

// How long a run waits for space on a full disk, unless the program says otherwise.
inline constexpr int kDiskWaitSeconds = 60;

// What a program says about every piece of work.
struct WorkSettings {
  int threads = 0;  // 0: as many as there are processors
  std::stop_token stop;
  kelvarin_log log{};
  int diskWaitSeconds = kDiskWaitSeconds;
};

class RunServices final : public HostServices {
 public:
  explicit RunServices(const WorkSettings& settings) : m_settings(settings) {}

  void log(LogLevel level, const QString& text, const ActionItem* action) override;
  bool outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) override;

 private:
  const WorkSettings m_settings;
  std::mutex m_mutex;      // held while the program listens
  std::mutex m_diskMutex;  // guards what follows
  QSet<QString> m_reported;
  int m_waited = 0;  // seconds
};

}  // namespace kelvarin

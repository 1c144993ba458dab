// What the program offers to the graphs it runs: their log and the question about a full disk.
//
// Installed for the lifetime of the object.  Threads: any.
#pragma once

#include "cli/console.h"
#include "cli/disk_wait.h"
#include "host/contract/host_services.h"

namespace kelvarin {

class ProgramServices : public HostServices {
 public:
  explicit ProgramServices(Console& console, int diskWaitSeconds = 60);
  ~ProgramServices() override;

  void log(LogLevel level, const QString& text, const ActionItem* action) override;
  bool outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) override;

 private:
  Console& m_console;
  DiskWait m_diskWait;
  HostServices* m_previous;
};

}  // namespace kelvarin

#include "cli/program_services.h"

namespace kelvarin {

ProgramServices::ProgramServices(Console& console, int diskWaitSeconds)
    : m_console(console),
      m_diskWait(console, diskWaitSeconds),
      m_previous(installHostServices(this)) {}

ProgramServices::~ProgramServices() { installHostServices(m_previous); }

void ProgramServices::log(LogLevel level, const QString& text, const ActionItem*) {
  m_console.writeLog(level, text);
}

bool ProgramServices::outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) {
  return m_diskWait.shouldRetry(file, missingBytes, canRetry);
}

}  // namespace kelvarin

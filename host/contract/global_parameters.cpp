#include "host/contract/global_parameters.h"

#include <QDir>

#include "base/usable_processors.h"
#include "host/contract/parameter_expansion.h"

QString GlobalParameters::expandString2(QString text, QString* unknownName) const {
  const kelvarin::ParameterExpansion expansion(text, m_values);
  if (unknownName != nullptr && unknownName->isNull()) {
    *unknownName = expansion.unknownName();
  }
  return expansion.text();
}

QString GlobalParameters::contractFile(QString path) const {
  const QString relative = QDir(m_workingDir).relativeFilePath(path);
  const bool isAbove = relative == u".." || relative.startsWith(QLatin1String("../"));
  return isAbove || m_workingDir.isEmpty() ? path : relative;
}

void RunRecord::stop() {
  finish(GlobalParameters::RunningState::stoppedByUser);
  const std::lock_guard lock(m_mutex);
  if (m_wake) {
    m_wake();
  }
}

void RunRecord::setWaker(std::function<void()> wake) {
  const std::lock_guard lock(m_mutex);
  m_wake = std::move(wake);
}

int GlobalParameters::threadCount() const {
  return m_threadCount > 0 ? m_threadCount : kelvarin::usableProcessors();
}

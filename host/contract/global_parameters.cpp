#include "host/contract/global_parameters.h"

#include <algorithm>
#include <thread>

#include <QDir>

QString GlobalParameters::expandString2(QString text, QString* unknownName) const {
  QString expanded;
  qsizetype done = 0;
  for (;;) {
    const qsizetype start = text.indexOf(QLatin1String("${"), done);
    const qsizetype end = start < 0 ? -1 : text.indexOf(u'}', start);
    if (end < 0) {
      return expanded + text.mid(done);
    }
    const QString name = text.mid(start + 2, end - start - 2);
    expanded += text.mid(done, start - done);
    if (m_values.contains(name)) {
      expanded += m_values.value(name);
    } else {
      expanded += text.mid(start, end + 1 - start);
      if (unknownName != nullptr && unknownName->isNull()) {
        *unknownName = name;
      }
    }
    done = end + 1;
  }
}

QString GlobalParameters::contractFile(QString path) const {
  const QString relative = QDir(m_workingDir).relativeFilePath(path);
  const bool isAbove = relative == u".." || relative.startsWith(QLatin1String("../"));
  return isAbove || m_workingDir.isEmpty() ? path : relative;
}

int GlobalParameters::threadCount() const {
  return m_threadCount > 0 ? m_threadCount
                           : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

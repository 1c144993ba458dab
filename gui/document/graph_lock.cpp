#include "gui/document/graph_lock.h"

#include <utility>

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace kelvarin {

namespace {

// Links to one graph have one lock.
QString realPath(const QString& graphFile) {
  const QFileInfo info(graphFile);
  const QString real = info.canonicalFilePath();
  return real.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : real;
}

QString lockBeside(const QString& graph) {
  const QFileInfo info(graph);
  return info.dir().filePath(QStringLiteral(".%1.lock").arg(info.fileName()));
}

QString lockOfRuntime(const QString& graph) {
  QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (folder.isEmpty()) {
    folder = QDir::tempPath();
  }
  const QByteArray digest = QCryptographicHash::hash(graph.toUtf8(), QCryptographicHash::Sha1);
  return QDir(folder).filePath(
      QStringLiteral("kelvarin-%1.lock").arg(QLatin1String(digest.toHex())));
}

GraphHolder holderOf(const QLockFile& lock) {
  GraphHolder holder;
  lock.getLockInfo(&holder.process, &holder.host, &holder.program);
  holder.user = QFileInfo(lock.fileName()).owner();
  return holder;
}

}  // namespace

// A graph may be open for days, so a lock never becomes stale by its age.
GraphLock::GraphLock(QString graphFile, const QString& lockFile)
    : m_graphFile(std::move(graphFile)), m_lock(lockFile) {
  m_lock.setStaleLockTime(0);
}

GraphLock::Outcome GraphLock::take(const QString& graphFile) {
  const QString graph = realPath(graphFile);
  for (const auto& lockFile : {lockBeside, lockOfRuntime}) {
    std::unique_ptr<GraphLock> lock(new GraphLock(graph, lockFile(graph)));
    if (lock->m_lock.tryLock(0)) {
      return lock;
    }
    if (lock->m_lock.error() == QLockFile::LockFailedError) {
      return holderOf(lock->m_lock);
    }
  }
  return std::unique_ptr<GraphLock>();
}

bool GraphLock::isOf(const QString& graphFile) const {
  return realPath(graphFile) == m_graphFile;
}

}  // namespace kelvarin

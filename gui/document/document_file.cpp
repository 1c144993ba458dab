#include "gui/document/document_file.h"

#include <chrono>
#include <utility>

#include <QFile>
#include <QFileInfo>

#include "gui/document/recovery_record.h"
#include "host/engine/graph_writer.h"

namespace kelvarin {

namespace {

constexpr std::chrono::seconds kWatchInterval{3};

// Null where it cannot be read.
QByteArray contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString textOf(const GraphHolder& holder) {
  const QString user = holder.user.isEmpty() ? DocumentFile::tr("Somebody") : holder.user;
  if (holder.process == 0) {
    return DocumentFile::tr("%1 has it open").arg(user);
  }
  return DocumentFile::tr("%1 has it open on %2 (%3, process %4)")
      .arg(user, holder.host, holder.program)
      .arg(holder.process);
}

}  // namespace

DocumentFile::DocumentFile(QObject* parent) : QObject(parent) {
  connect(&m_watch, &QTimer::timeout, this, &DocumentFile::compareWithDisk);
  m_watch.start(kWatchInterval);
}

void DocumentFile::forget() {
  m_path.clear();
  m_jobs.start([this] { m_lock.reset(); });
}

void DocumentFile::resume(const QString& path, const QByteArray& digest) {
  m_path = path;
  m_mode = OpenMode::alone;
  m_jobs.start([this, path, digest] {
    m_lock.reset();
    m_sharedPath.clear();
    if (!path.isEmpty()) {
      (void)lock(path);  // a save says who has it
    }
    m_pathOnDisk = path;
    m_digestOnDisk = digest;
    m_looked = {};
  });
}

void DocumentFile::open(const QString& path, OpenMode mode) {
  m_jobs.start([this, path, mode] { read(path, mode); });
}

void DocumentFile::reload() {
  open(m_path, m_mode);
}

void DocumentFile::read(const QString& path, OpenMode mode) {
  const auto document = readGraphFile(path);
  if (!document) {
    m_reports.post([this, path, faults = document.error()] { emit openFailed(path, faults); });
    return;
  }
  const auto prepared = m_preparation ? m_preparation(path, *document) : nullptr;
  if (prepared != nullptr && !prepared->isGraph()) {
    m_reports.post([this, path, faults = prepared->faults()] { emit openFailed(path, faults); });
    return;
  }
  if (mode != OpenMode::alone) {
    m_lock.reset();
  } else if (const auto locked = lock(path); !locked) {
    m_reports.post([this, path, holder = locked.error()] { emit foundLock(path, holder); });
    return;
  }
  m_sharedPath = mode == OpenMode::shared ? path : QString();
  noteDisk(path, *document);
  m_reports.post([this, path, mode, content = *document, prepared] {
    m_path = mode == OpenMode::copy ? QString() : path;
    m_mode = mode;
    emit opened(path, content, prepared);
  });
}

Status<QString> DocumentFile::lock(const QString& path) {
  if (m_lock != nullptr && m_lock->isOf(path)) {
    return Done{};
  }
  GraphLock::Outcome outcome = GraphLock::take(path);
  if (const auto* holder = std::get_if<GraphHolder>(&outcome)) {
    return Failure{textOf(*holder)};
  }
  m_lock = std::move(std::get<std::unique_ptr<GraphLock>>(outcome));
  return Done{};
}

void DocumentFile::noteDisk(const QString& path, const QByteArray& content) {
  m_pathOnDisk = path;
  m_digestOnDisk = contentDigest(content);
  m_looked = stateOf(path);
}

DocumentFile::DiskState DocumentFile::stateOf(const QString& path) {
  const QFileInfo info(path);
  return {info.exists(), info.size(), info.lastModified()};
}

// A file that exists where none was read or saved is somebody else's, but the user chose it.
bool DocumentFile::isOtherOnDisk(const QString& path) const {
  return path == m_pathOnDisk && QFile::exists(path) &&
         contentDigest(contentOf(path)) != m_digestOnDisk;
}

void DocumentFile::save(const QByteArray& document, const QString& path, SaveMode mode) {
  m_jobs.start([this, document, path, mode] { write(document, path, mode); });
}

void DocumentFile::write(const QByteArray& document, const QString& path, SaveMode mode) {
  if (const auto locked = path == m_sharedPath ? Status<QString>(Done{}) : lock(path); !locked) {
    const QString reason = tr("%1 cannot be replaced. %2.").arg(path, locked.error());
    m_reports.post([this, path, reason] { emit saveFailed(path, reason); });
    return;
  }
  if (mode == SaveMode::ifUnchangedOnDisk && isOtherOnDisk(path)) {
    m_reports.post([this, onDisk = contentOf(path)] { emit saveFoundOtherFile(onDisk); });
    return;
  }
  if (const auto outcome = saveGraphDocument(document, path); !outcome) {
    m_reports.post([this, path, reason = outcome.error()] { emit saveFailed(path, reason); });
    return;
  }
  noteDisk(path, document);
  m_reports.post([this, path, document] {
    m_path = path;
    emit saved(document);
  });
}

void DocumentFile::compareWithDisk() {
  if (m_path.isEmpty() || m_isLooking.exchange(true)) {
    return;
  }
  m_jobs.start([this, path = m_path] {
    look(path);
    m_isLooking = false;
  });
}

void DocumentFile::look(const QString& path) {
  const DiskState now = stateOf(path);
  if (path != m_pathOnDisk || now == m_looked) {
    return;
  }
  m_looked = now;
  if (!now.exists) {
    m_reports.post([this, path] { emit goneFromDisk(path); });
  } else if (const QByteArray onDisk = contentOf(path); contentDigest(onDisk) != m_digestOnDisk) {
    m_reports.post([this, onDisk] { emit changedOnDisk(onDisk); });
  }
}

void DocumentFile::acceptDisk() {
  m_jobs.start([this, path = m_path] { noteDisk(path, contentOf(path)); });
}

}  // namespace kelvarin

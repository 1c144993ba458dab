#include "gui/document/document_file.h"

#include <functional>
#include <utility>

#include <QFile>
#include <QFileInfo>

#include "gui/document/recovery_record.h"
#include "host/engine/graph_writer.h"
#include "host/files/file_hints.h"

namespace kelvarin {

namespace {

// Null where it cannot be read.
QByteArray contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

DocumentFile::DocumentFile(QObject* parent) : QObject(parent) {
  m_jobs.setMaxThreadCount(1);
}

DocumentFile::~DocumentFile() {
  m_jobs.waitForDone();
}

void DocumentFile::post(std::function<void()> report) {
  QMetaObject::invokeMethod(this, std::move(report), Qt::QueuedConnection);
}

void DocumentFile::forget() {
  m_path.clear();
}

void DocumentFile::resume(const QString& path, const QByteArray& digest) {
  m_path = path;
  m_jobs.start([this, path, digest] {
    m_pathOnDisk = path;
    m_digestOnDisk = digest;
  });
}

void DocumentFile::open(const QString& path) {
  m_jobs.start([this, path] {
    QFile file(path);
    QString reason;
    QByteArray document;
    if (QFileInfo(path).isDir()) {
      reason = tr("It is a folder.");
    } else if (!file.open(QIODevice::ReadOnly)) {
      reason = QStringLiteral("%1. %2").arg(file.errorString(), missingFileHint(path)).trimmed();
    } else {
      document = file.readAll();
      reason = file.error() == QFileDevice::NoError ? QString() : file.errorString();
    }
    if (!reason.isEmpty()) {
      post([this, path, reason] { emit openFailed(path, reason); });
      return;
    }
    m_pathOnDisk = path;
    m_digestOnDisk = contentDigest(document);
    post([this, path, document] {
      m_path = path;
      emit opened(path, document);
    });
  });
}

// A file that exists where none was read or saved is somebody else's, but the user chose it.
bool DocumentFile::isOtherOnDisk(const QString& path) const {
  return path == m_pathOnDisk && QFile::exists(path) &&
         contentDigest(contentOf(path)) != m_digestOnDisk;
}

void DocumentFile::save(const QByteArray& document, const QString& path, SaveMode mode) {
  m_jobs.start([this, document, path, mode] {
    if (mode == SaveMode::ifUnchangedOnDisk && isOtherOnDisk(path)) {
      post([this, onDisk = contentOf(path)] { emit saveFoundOtherFile(onDisk); });
      return;
    }
    const auto outcome = saveGraphDocument(document, path);
    if (!outcome) {
      post([this, path, reason = outcome.error()] { emit saveFailed(path, reason); });
      return;
    }
    m_pathOnDisk = path;
    m_digestOnDisk = contentDigest(document);
    post([this, path, document] {
      m_path = path;
      emit saved(document);
    });
  });
}

void DocumentFile::compareWithDisk() {
  if (m_path.isEmpty()) {
    return;
  }
  m_jobs.start([this, path = m_path] {
    if (isOtherOnDisk(path)) {
      post([this] { emit changedOnDisk(); });
    }
  });
}

void DocumentFile::acceptDisk() {
  m_jobs.start([this, path = m_path] {
    m_pathOnDisk = path;
    m_digestOnDisk = contentDigest(contentOf(path));
  });
}

}  // namespace kelvarin

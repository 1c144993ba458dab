#include "gui/document/recovery_file.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QStandardPaths>
#include <QUuid>

#include "host/files/replace_file.h"

namespace kelvarin {

namespace {

const QString kSuffix = QStringLiteral(".recovery");
const QString kLockSuffix = QStringLiteral(".lock");

// A process that dies within its first write leaves a lock only, one that ends without removing
// its file leaves no lock.
QSet<QString> sessionNames(const QDir& folder) {
  QSet<QString> names;
  for (const QString& file : folder.entryList(QDir::Files)) {
    const QString name = file.endsWith(kLockSuffix) ? file.chopped(kLockSuffix.size()) : file;
    if (name.endsWith(kSuffix)) {
      names += name;
    }
  }
  return names;
}

}  // namespace

// A lock never becomes stale by its age: a program may be open for days.
RecoveryFile::RecoveryFile(const QString& path) : m_path(path), m_lock(path + kLockSuffix) {
  m_lock.setStaleLockTime(0);
}

Result<std::unique_ptr<RecoveryFile>, QString> RecoveryFile::create(const QString& folder) {
  if (!QDir().mkpath(folder)) {
    return Failure{
        QCoreApplication::translate("kelvarin::RecoveryFile", "the folder %1 cannot be made")
            .arg(folder)};
  }
  QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  const QString name = QStringLiteral("%1-%2%3")
                           .arg(QCoreApplication::applicationPid())
                           .arg(QUuid::createUuid().toString(QUuid::Id128).first(8), kSuffix);
  std::unique_ptr<RecoveryFile> file(new RecoveryFile(QDir(folder).filePath(name)));
  if (!file->m_lock.tryLock(0)) {
    return Failure{
        QCoreApplication::translate("kelvarin::RecoveryFile", "the folder %1 cannot be written to")
            .arg(folder)};
  }
  return file;
}

std::vector<std::unique_ptr<RecoveryFile>> RecoveryFile::takeAbandoned(const QString& folder) {
  std::vector<std::unique_ptr<RecoveryFile>> taken;
  const QDir directory(folder);
  for (const QString& name : sessionNames(directory)) {
    std::unique_ptr<RecoveryFile> file(new RecoveryFile(directory.filePath(name)));
    if (!file->m_lock.tryLock(0)) {
      continue;
    }
    for (const QString& rest : directory.entryList({name + QStringLiteral(".??????")})) {
      QFile::remove(directory.filePath(rest));
    }
    if (file->read()) {
      taken.push_back(std::move(file));
    }
  }
  std::ranges::sort(taken, std::ranges::greater(),
                    [](const auto& file) { return file->found().time; });
  return taken;
}

bool RecoveryFile::read() {
  QFile file(m_path);
  if (!file.open(QIODevice::ReadOnly)) {
    return false;
  }
  const auto record = readRecovery(file.readAll());
  if (!record) {
    return false;
  }
  m_found = *record;
  return true;
}

Status<QString> RecoveryFile::write(const RecoveryRecord& record) const {
  return replaceFile(m_path, recoveryText(record));
}

void RecoveryFile::remove() const {
  QFile::remove(m_path);
}

QString recoveryFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
         QStringLiteral("/recovery");
}

}  // namespace kelvarin

#include "host/files/output_check.h"

#include <QDir>
#include <QFileInfo>

#include "host/files/messages.h"

namespace kelvarin {

namespace {

QString whyNotInFolder(const QString& file, const QFileInfo& folder) {
  if (!folder.exists()) {
    return messages::folderMissing(file, folder.filePath());
  }
  if (!folder.isDir()) {
    return messages::folderIsNone(file, folder.filePath());
  }
  return folder.isWritable() && folder.isExecutable()
             ? QString()
             : messages::folderNotWritable(file, folder.filePath());
}

}  // namespace

OutputCheck::~OutputCheck() = default;

QString whyNotWritable(const QString& file) {
  const QFileInfo present(file);
  if (present.isDir()) {
    return messages::fileIsFolder(file);
  }
  if (present.exists() && !present.isFile()) {
    return {};
  }
  return whyNotInFolder(file, QFileInfo(present.absolutePath()));
}

QString whyNotCreatable(const QString& file) {
  const QFileInfo present(file);
  QDir folder = present.absoluteDir();
  while (!QFileInfo::exists(folder.path()) && !folder.isRoot()) {
    folder.setPath(QFileInfo(folder.path()).absolutePath());
  }
  return folder == present.absoluteDir() ? whyNotWritable(file)
                                         : whyNotInFolder(file, QFileInfo(folder.path()));
}

}  // namespace kelvarin

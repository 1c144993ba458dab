#include "host/engine/written_files.h"

#include <QDir>
#include <QFileInfo>

#include "host/contract/file_user.h"

namespace kelvarin {

namespace {

void append(std::vector<WrittenFile>& files, const QFileInfo& file) {
  files.push_back({file.filePath(), file.size()});
}

// File systems keep coarser times than clocks do.
bool isOfRun(const QFileInfo& file, const QDateTime& startOfRun) {
  return file.lastModified() >= startOfRun.addSecs(-1);
}

void appendMatching(std::vector<WrittenFile>& files, const QString& folder, const QString& pattern,
                    const QDateTime& startOfRun) {
  for (const QFileInfo& file : QDir(folder).entryInfoList({pattern}, QDir::Files, QDir::Name)) {
    if (isOfRun(file, startOfRun)) {
      append(files, file);
    }
  }
}

}  // namespace

std::vector<WrittenFile> writtenFiles(const ActionItem& action, const QDateTime& startOfRun) {
  std::vector<WrittenFile> files;
  const auto* user = dynamic_cast<const FileUser*>(&action);
  if (user == nullptr) {
    return files;
  }
  for (const UsedFile& used : user->usedFiles()) {
    if (used.use != FileUse::writes || isStandardOutput(used.path)) {
      continue;
    }
    const QFileInfo file(used.path);
    if (file.isFile()) {
      append(files, file);
    } else {
      appendMatching(files, file.path(), file.fileName(), startOfRun);
    }
    if (!used.companions.isEmpty()) {
      appendMatching(files, file.path(), used.companions, startOfRun);
    }
  }
  return files;
}

}  // namespace kelvarin

#include "columnar/actions/table_deletion.h"

#include <cerrno>
#include <cstdio>

#include <unistd.h>

#include "columnar/actions/messages.h"
#include "columnar/actions/system_paths.h"
#include "columnar/files/folder_lock.h"
#include "columnar/files/table_exchange.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_names.h"

namespace kelvarin {

namespace {

// Why nothing may be deleted; empty where it may. The folder is locked.
QString hindranceOf(const QString& mainFile, const FolderLock& folder) {
  const std::string path = systemPath(mainFile);
  if (!folder.isHeld()) {
    return columnar_messages::folderInUse(mainFile);
  }
  switch (finishExchange(path)) {
    case OpenExchange::none:
      break;
    case OpenExchange::unfinished:
      return columnar_messages::notDeleted(mainFile, qt_error_string(errno));
    case OpenExchange::damaged:
      return columnar_messages::journalDamagedOnWrite(mainFile, shownPath(journalFile(path)));
  }
  if (filesOfTable(mainFile).isEmpty()) {
    return columnar_messages::nothingToDelete(mainFile);
  }
  if (isBeingWritten(path) || isBeingWritten(replacementFile(path))) {
    return columnar_messages::beingWritten(mainFile);
  }
  if (isSomethingThere(path) && !isColumnarFile(path)) {
    return columnar_messages::foreignNotDeleted(mainFile);
  }
  const std::string other = tableSharingSideFiles(path);
  return other.empty() ? QString()
                       : columnar_messages::sharedNotDeleted(mainFile, shownPath(other));
}

}  // namespace

QStringList filesOfTable(const QString& mainFile) {
  const std::string path = systemPath(mainFile);
  QStringList files;
  if (mainFile.isEmpty()) {
    return files;
  }
  if (isSomethingThere(path)) {
    files += mainFile;
  }
  for (const std::string& name : sideFileNamesOf(path)) {
    files += shownPath(folderOf(path) + name);
  }
  return files;
}

// The main file goes first: as long as it stays, the table is whole.
TableDeletion deleteTable(const QString& mainFile) {
  TableDeletion deletion;
  const FolderLock folder(systemPath(mainFile));
  deletion.failure = hindranceOf(mainFile, folder);
  if (!deletion.failure.isEmpty()) {
    return deletion;
  }
  for (const QString& file : filesOfTable(mainFile)) {
    if (::unlink(systemPath(file).c_str()) == 0) {
      deletion.successes += columnar_messages::deleted(file);
      continue;
    }
    deletion.failure = columnar_messages::notDeleted(file, qt_error_string(errno));
    if (file == mainFile) {
      return deletion;
    }
  }
  return deletion;
}

}  // namespace kelvarin

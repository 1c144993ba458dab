#include "columnar/reader/failure_texts.h"

#include <QFile>
#include <QFileInfo>

#include "columnar/format/file_names.h"
#include "columnar/reader/messages.h"

namespace kelvarin {

namespace {

namespace texts = gel_file_messages;
using Kind = GelDamage::Kind;

QString reasonNotOpened(const QString& name) {
  const QFileInfo info(name);
  if (!info.exists()) {
    return texts::noSuchFile();
  }
  if (!info.isFile()) {  // to open a pipe would wait for its other end
    return info.isDir() ? texts::isFolder() : texts::isNoOrdinaryFile();
  }
  QFile file(name);
  (void)file.open(QIODevice::ReadOnly);
  return file.errorString();
}

// The main file that `path` would be a side file of; empty when it is none by its name.
QString mainFileOf(const std::string& path) {
  constexpr std::size_t kNumberSize = 4;  // ".000"
  const std::size_t stem = stemOfMainFile(path).size();
  if (stem < kNumberSize) {
    return {};
  }
  const std::string mainFile = path.substr(0, stem - kNumberSize).append(kMainFileExtension);
  return isSideFileName(mainFile, path) ? QString::fromStdString(mainFile) : QString();
}

QString reasonOfRecord(ReadStatus cause) {
  switch (cause) {
    case ReadStatus::wrongChecksum:
      return texts::recordChecksum();
    case ReadStatus::beyondLimits:
      return texts::recordTooLarge();
    default:
      return texts::recordContent();
  }
}

QString reasonOfChunk(ReadStatus cause) {
  switch (cause) {
    case ReadStatus::wrongChecksum:
      return texts::chunkChecksum();
    case ReadStatus::beyondLimits:
      return texts::chunkTooLarge();
    default:
      return texts::chunkContent();
  }
}

QString reasonOf(const GelDamage& damage) {
  switch (damage.kind) {
    case Kind::record:
      return reasonOfRecord(damage.cause);
    case Kind::mainFileCut:
      return texts::mainFileCut();
    case Kind::rowCount:
      return texts::badRowCount();
    case Kind::chunk:
      return reasonOfChunk(damage.cause);
    case Kind::unknownEncoding:
      return texts::unknownLayout(damage.encoding);
    case Kind::sideFileCut:
      return texts::sideFileCut();
    case Kind::statistics:
      return texts::badSummary();
    case Kind::sideFileMissing:
      break;
  }
  return texts::sideFileMissing(QString::fromStdString(damage.file));
}

}  // namespace

QString openFailureText(const std::string& path, OpenFailure::Problem problem) {
  const QString name = QString::fromStdString(path);
  if (problem == OpenFailure::Problem::cannotOpen) {
    return texts::cannotOpen(name, reasonNotOpened(name));
  }
  if (problem == OpenFailure::Problem::exchangeDamaged) {
    return texts::journalDamaged(name, QString::fromStdString(journalFile(path)));
  }
  const QString mainFile = mainFileOf(path);
  return mainFile.isEmpty() ? texts::notAGelFile(name) : texts::sideFileGiven(name, mainFile);
}

QString damageText(const GelDamage& damage) {
  if (damage.kind == Kind::sideFileMissing) {
    return reasonOf(damage);
  }
  const QString column =
      damage.column.empty() ? QString() : texts::inColumn(QString::fromStdString(damage.column));
  return texts::damageAt(QString::fromStdString(damage.file), damage.offset, damage.block,
                         damage.firstRow, damage.lastRow, column, reasonOf(damage));
}

}  // namespace kelvarin

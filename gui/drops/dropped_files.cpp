#include "gui/drops/dropped_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "gui/host_editors/table_look.h"
#include "host/files/file_hints.h"

namespace kelvarin {

namespace {

constexpr qsizetype kMaxFilesOfFolder = 20;
const QString kGraphType = QStringLiteral("kelvarin");
const QString kCsvType = QStringLiteral("csv");

class Texts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::FileDrop)
};

bool isReadable(const QString& path, const QStringList& readableTypes) {
  return readableTypes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive);
}

// Empty where the content does not say it.
QString typeByContent(FileFormat format) {
  switch (format) {
    case FileFormat::parquet:
      return QStringLiteral("parquet");
    case FileFormat::arrow:
      return QStringLiteral("arrow");
    case FileFormat::columnar:
      return QStringLiteral("cgel_kelvarin");
    default:
      return {};
  }
}

// ReadCSV may be able to read it: as a text of another encoding, or uncompressed.
bool mayBeText(FileFormat format) {
  return format == FileFormat::text || format == FileFormat::utf16 ||
         format == FileFormat::compressed;
}

// The content wins over a name that promises something else; a text is CSV unless its name says
// more.
QString typeOf(const QString& path, FileFormat format, const QStringList& readableTypes) {
  if (const QString type = typeByContent(format); readableTypes.contains(type)) {
    return type;
  }
  if (isReadable(path, readableTypes)) {
    return QFileInfo(path).suffix().toLower();
  }
  return mayBeText(format) ? kCsvType : QString();
}

QString whyNotRead(const QString& path, FileFormat format, const QStringList& readableTypes) {
  const QString name = QFileInfo(path).fileName();
  if (format == FileFormat::compressed || format == FileFormat::archive) {
    return Texts::tr("'%1' is compressed. Unpack it, and drop what was in it.").arg(name);
  }
  return Texts::tr("No action reads '%1'. Files of these types can be read: %2.")
      .arg(name, readableTypes.join(u", "));
}

DroppedFile lookAt(const QString& path, const QStringList& readableTypes) {
  DroppedFile file{.path = path, .fileType = {}, .csv = {}, .why = whyNotLookedInto(path)};
  if (!file.why.isEmpty()) {
    return file;
  }
  const FileFormat format = formatOfContent(path);
  if (format == FileFormat::graph || QFileInfo(path).suffix() == kGraphType) {
    file.kind = DroppedFile::Kind::graph;
    return file;
  }
  const Result<CsvStart, QString> start =
      mayBeText(format) ? readCsvStart(path) : Failure{QString()};
  file.fileType = typeOf(path, format, readableTypes);
  if (file.fileType.isEmpty() || (format == FileFormat::compressed && !start)) {
    file.why = whyNotRead(path, format, readableTypes);
    return file;
  }
  file.kind = DroppedFile::Kind::table;
  if (start) {
    file.csv = guessCsv(start->text, start->isWhole);
    file.encoding = start->encoding;
  }
  return file;
}

// Files that lie among the tables and are none are passed over.
std::vector<DroppedFile> lookIntoFolder(const QString& folder, const QStringList& readableTypes) {
  QStringList tables;
  for (const QFileInfo& entry : QDir(folder).entryInfoList(QDir::Files, QDir::Name)) {
    if (isReadable(entry.filePath(), readableTypes)) {
      tables += entry.filePath();
    }
  }
  if (tables.isEmpty() || tables.size() > kMaxFilesOfFolder) {
    const QString why =
        tables.isEmpty()
            ? Texts::tr("The folder '%1' has no file that an action reads.").arg(folder)
            : Texts::tr("The folder '%1' has %2 files that can be read. Drop those that you need.")
                  .arg(folder)
                  .arg(tables.size());
    return {{.path = folder, .fileType = {}, .csv = {}, .why = why}};
  }
  std::vector<DroppedFile> files;
  for (const QString& table : tables) {
    files.push_back(lookAt(table, readableTypes));
  }
  return files;
}

}  // namespace

std::vector<DroppedFile> lookAtDropped(const QStringList& paths, const QStringList& readableTypes) {
  std::vector<DroppedFile> files;
  for (const QString& path : paths) {
    if (QFileInfo(path).isDir()) {
      const std::vector<DroppedFile> inside = lookIntoFolder(path, readableTypes);
      files.insert(files.end(), inside.begin(), inside.end());
    } else {
      files.push_back(lookAt(path, readableTypes));
    }
  }
  return files;
}

}  // namespace kelvarin

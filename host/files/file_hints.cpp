#include "host/files/file_hints.h"

#include <algorithm>
#include <iterator>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "host/contract/nearest_names.h"
#include "host/files/messages.h"

namespace kelvarin {

namespace {

constexpr int kMaxNames = 10'000;
constexpr qsizetype kMaxShown = 3;

struct FormatFacts {
  FileFormat format;
  const char* name;
  const char* action;  // that reads it; null where it is no table
  const char* extensions;
};

constexpr FormatFacts kFormats[] = {
    {FileFormat::text, "a text file", "ReadCSV", ""},
    {FileFormat::csv, "CSV", "ReadCSV", "csv tsv"},
    {FileFormat::parquet, "a Parquet file", "ReadParquet", "parquet"},
    {FileFormat::arrow, "an Arrow file", "ReadArrow", "arrow arrows feather ipc"},
    {FileFormat::columnar, "a columnar file", "ReadColumnarGel", "cgel_kelvarin"},
    {FileFormat::graph, "a graph file", nullptr, "kelvarin"},
};

const FormatFacts* factsOf(FileFormat format) {
  const auto* found =
      std::find_if(std::begin(kFormats), std::end(kFormats),
                   [format](const FormatFacts& facts) { return facts.format == format; });
  return found == std::end(kFormats) ? nullptr : found;
}

FileFormat formatOfExtension(const QString& path) {
  const QString extension = QFileInfo(path).suffix().toLower();
  for (const FormatFacts& facts : kFormats) {
    if (QString::fromLatin1(facts.extensions).split(u' ', Qt::SkipEmptyParts).contains(extension)) {
      return facts.format;
    }
  }
  return FileFormat::unknown;
}

// Text has no control characters but blanks and line breaks.
bool isText(const QByteArray& start) {
  return std::all_of(start.begin(), start.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 || (byte >= '\t' && byte <= '\r');
  });
}

// Names the first part of the path that does not exist.
QString missingFolderHint(const QString& folder) {
  QString missing = folder;
  QString parent = QFileInfo(missing).path();
  while (!QFileInfo::exists(parent) && parent != missing) {
    missing = parent;
    parent = QFileInfo(missing).path();
  }
  return QFileInfo(parent).isDir() ? messages::noFolder(missing)
                                   : messages::noFolderButFile(parent);
}

}  // namespace

FileFormat formatOfContent(const QString& path) {
  constexpr qint64 kStart = 4096;
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
    return FileFormat::unknown;
  }
  const QByteArray start = file.read(kStart);
  const FileFormat known =
      formatOfSignature({start.constData(), static_cast<std::size_t>(start.size())});
  if (known != FileFormat::unknown) {
    return known;
  }
  if (start.contains("<KelvarinGraph")) {
    return FileFormat::graph;
  }
  return !start.isEmpty() && isText(start) ? FileFormat::text : FileFormat::unknown;
}

QString missingFileHint(const QString& path) {
  const QFileInfo file(path);
  if (path.isEmpty() || file.exists() || file.isSymLink()) {
    return {};
  }
  const QFileInfo folder(file.absolutePath());
  if (!folder.isDir()) {
    return folder.exists() ? messages::noFolderButFile(folder.filePath())
                           : missingFolderHint(folder.filePath());
  }
  QStringList names;
  QDirIterator entries(folder.filePath(), QDir::Files | QDir::Hidden);
  while (entries.hasNext() && names.size() < kMaxNames) {
    entries.next();
    names += entries.fileName();
  }
  const QStringList near = nearestNames(file.fileName(), names);
  if (!near.isEmpty()) {
    return messages::filesMeant(near);
  }
  QStringList ofKind;
  std::copy_if(names.begin(), names.end(), std::back_inserter(ofKind), [&](const QString& name) {
    return !file.suffix().isEmpty() && QFileInfo(name).suffix() == file.suffix();
  });
  ofKind.sort();
  ofKind.resize(std::min<qsizetype>(ofKind.size(), kMaxShown));
  return ofKind.isEmpty() ? QString() : messages::filesThere(ofKind);
}

QString foreignFormatHint(const QString& path, FileFormat wanted) {
  const FormatFacts* facts = factsOf(formatOfContent(path));
  if (facts == nullptr || facts->format == wanted) {
    return {};
  }
  const QString name = QString::fromLatin1(facts->name);
  if (wanted == FileFormat::graph) {
    return messages::noGraphFile(name);
  }
  return facts->action == nullptr ? messages::looksLikeGraph()
                                  : messages::looksLike(name, QString::fromLatin1(facts->action));
}

QString foreignExtensionHint(const QString& path, FileFormat own) {
  const FormatFacts* named = factsOf(formatOfExtension(path));
  const FormatFacts* written = factsOf(own);
  return named == nullptr || written == nullptr || named->format == own
             ? QString()
             : messages::nameOfOtherFormat(path, QString::fromLatin1(written->name),
                                           QFileInfo(path).suffix(),
                                           QString::fromLatin1(named->name));
}

}  // namespace kelvarin

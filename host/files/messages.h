// What the log says about files that actions read and write.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::messages {

inline QString fileIsFolder(const QString& file) {
  return QStringLiteral("\"%1\" cannot be written: it is a folder.").arg(file);
}
inline QString folderMissing(const QString& file, const QString& folder) {
  return QStringLiteral("\"%1\" cannot be written: there is no folder \"%2\". Create it first.")
      .arg(file, folder);
}
inline QString folderIsNone(const QString& file, const QString& folder) {
  return QStringLiteral("\"%1\" cannot be written: \"%2\" is no folder.").arg(file, folder);
}
inline QString folderNotWritable(const QString& file, const QString& folder) {
  return QStringLiteral("\"%1\" cannot be written: the folder \"%2\" may not be written to.")
      .arg(file, folder);
}

// About tables that are divided by the values of a column.
inline QString splitOff() {
  return QStringLiteral(
      "splitVar has no effect without split='2': the table is not split by value.");
}
inline QString missingValue() {
  return QStringLiteral("(missing)");
}

// About files that do not exist or hold something else.
inline QString filesMeant(const QStringList& near) {
  return QStringLiteral("Did you mean '%1'?").arg(near.join(QStringLiteral("' or '")));
}
inline QString filesThere(const QStringList& names) {
  return QStringLiteral("Its folder has, for instance, '%1'.")
      .arg(names.join(QStringLiteral("', '")));
}
inline QString noFolder(const QString& folder) {
  return QStringLiteral("There is no folder '%1'.").arg(folder);
}
inline QString noFolderButFile(const QString& path) {
  return QStringLiteral("'%1' is a file, not a folder.").arg(path);
}
inline QString looksLike(const QString& format, const QString& action) {
  return QStringLiteral("The file looks like %1; %2 reads those.").arg(format, action);
}
inline QString looksLikeGraph() {
  return QStringLiteral("The file looks like a graph file, which 'kelvarin run' runs.");
}
inline QString noGraphFile(const QString& format) {
  return QStringLiteral(
             "The file is no graph file; it looks like %1. A graph file begins with "
             "<KelvarinGraph version='1.0'> and names the tables to read and write.")
      .arg(format);
}
inline QString nameOfOtherFormat(const QString& file, const QString& written,
                                 const QString& extension, const QString& format) {
  return QStringLiteral(
             "The file '%1' is written as %2, but its extension .%3 is that of %4: programs that "
             "go by the name cannot read it.")
      .arg(file, written, extension, format);
}

inline QString notARegularFile(const QString& path) {
  return QStringLiteral("\"%1\" is no file that can be read: it is a folder or a device.")
      .arg(path);
}
inline QString fileError(const QString& path, const QString& reason) {
  return QStringLiteral("The file \"%1\" cannot be read: %2").arg(path, reason);
}
inline QString noSavedTable(const QString& path) {
  return QStringLiteral("The file \"%1\" is no saved table, or its head is damaged.").arg(path);
}
inline QString damagedTable(const QString& path, long long offset) {
  return QStringLiteral("The saved table \"%1\" is damaged or cut off at byte %2.")
      .arg(path, QString::number(offset));
}

}  // namespace kelvarin::messages

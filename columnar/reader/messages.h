// The texts about columnar files that cannot be opened, or in which damage was found.
//
// Used by failure_texts.cpp, for the command line and the dialogs alike.
#pragma once

#include <cstdint>

#include <QString>

namespace kelvarin::gel_file_messages {

// Why a file was not opened.
inline QString cannotOpen(const QString& file, const QString& reason) {
  return QStringLiteral("Cannot read '%1': %2.").arg(file, reason);
}

inline QString noSuchFile() {
  return QStringLiteral("there is no such file");
}

inline QString isFolder() {
  return QStringLiteral("it is a folder");
}

inline QString isNoOrdinaryFile() {
  return QStringLiteral("it is a device or a pipe");
}

inline QString sideFileGiven(const QString& file, const QString& mainFile) {
  return QStringLiteral("'%1' holds columns of a table. Give the main file instead, which is '%2'.")
      .arg(file, mainFile);
}

inline QString notAGelFile(const QString& file) {
  return QStringLiteral(
             "Cannot read '%1': it is no columnar file, or its header or column list is "
             "damaged.")
      .arg(file);
}

inline QString journalDamaged(const QString& file, const QString& journal) {
  return QStringLiteral(
             "Cannot read '%1': a new table was taking its place, and the list of what is "
             "left to do, '%2', is damaged. Import the table anew.")
      .arg(file, journal);
}

// What a verification finds, and where.
inline QString damageAt(const QString& file, std::uint64_t offset, std::uint64_t block,
                        std::uint64_t firstRow, std::uint64_t lastRow, const QString& column,
                        const QString& reason) {
  return QStringLiteral("%1, byte %2: block %3 (rows %4 to %5)%6: %7")
      .arg(file, QString::number(offset), QString::number(block), QString::number(firstRow),
           QString::number(lastRow), column, reason);
}

inline QString inColumn(const QString& name) {
  return QStringLiteral(", column '%1'").arg(name);
}

inline QString recordChecksum() {
  return QStringLiteral("the block descriptors do not agree with their checksum");
}

inline QString recordContent() {
  return QStringLiteral("the block descriptors make no sense");
}

inline QString recordTooLarge() {
  return QStringLiteral("the block descriptors would take far more memory than the files justify");
}

inline QString mainFileCut() {
  return QStringLiteral("the file ends here, though more should follow");
}

inline QString badRowCount() {
  return QStringLiteral("the header's row count is not that of the blocks");
}

inline QString chunkChecksum() {
  return QStringLiteral("the values do not agree with their checksum");
}

inline QString chunkContent() {
  return QStringLiteral("the values make no sense, though their checksum is right");
}

inline QString chunkTooLarge() {
  return QStringLiteral("the values would take far more memory than the file justifies");
}

inline QString unknownLayout(int layout) {
  return QStringLiteral("the values have the layout %1, which is unknown")
      .arg(QString::number(layout));
}

inline QString sideFileCut() {
  return QStringLiteral("the file ends inside this column's values");
}

inline QString badSummary() {
  return QStringLiteral(
      "the values are not those that the main file describes; the column-set file may "
      "belong to another table");
}

inline QString sideFileMissing(const QString& file) {
  return QStringLiteral("%1: the file cannot be opened").arg(file);
}

}  // namespace kelvarin::gel_file_messages

// The texts that the actions of columnar files log.
//
// Some are prescribed and keep their words.
#pragma once

#include <cstdint>

#include <QString>

namespace kelvarin::columnar_messages {

// Reading columnar files.

// Where the names come from.
inline QString noColumnOnPin() {
  return QStringLiteral("ERROR: No column to read on input pin 1??");
}
inline QString unreadableName() {
  return QStringLiteral(
      "ERROR: Cannot read the name of the Columnar Kelvarin CGel file on input pin??");
}
inline QString unreadableNameSkipped() {
  return QStringLiteral(
      "Warning: Cannot read the name of the Columnar Kelvarin CGel file on input pin??");
}
inline QString noFileName() {
  return QStringLiteral(
      "There is no name of a columnar file to read. Set the attribute 'fileName', or "
      "take the names from the input pin with 'fileNameFromPin'.");
}
inline QString namesPinNotLinked(int pin, const QString& what) {
  return QStringLiteral(
             "Nothing is linked to input pin %1, which gives the names of the %2 to read. Link "
             "a table to it.")
      .arg(QString::number(pin), what);
}
inline QString unreadableColumnName(qsizetype row) {
  return QStringLiteral(
             "The table on input pin 1 has no column name on its row %1 (counted from 0). Each "
             "row names one column to read.")
      .arg(QString::number(row));
}
inline QString noColumnListed() {
  return QStringLiteral(
      "The list of columns to read is empty. Name at least one column, or read all "
      "columns.");
}
inline QString listOff() {
  return QStringLiteral(
      "The columns listed in ColumnsToRead have no effect without columnSelection='1' "
      "or readAllColumns='0': all columns are read.");
}

// Missing files and files that cannot be opened.
inline QString waitingForFile(const QString& file) {
  return QStringLiteral("Warning: cannot read Columnar file '%1': Waiting for the file...")
      .arg(file);
}
inline QString missingFileSkipped(const QString& file) {
  return QStringLiteral("Warning: The Columnar file '%1' does not exists").arg(file);
}
inline QString missingFile(const QString& file) {
  return QStringLiteral("Error: The Columnar file '%1' does not exists").arg(file);
}
// kept: cannotOpen() follows
inline QString cannotOpenFile(const QString& file) {
  return QStringLiteral("Warning: cannot open Columnar file '%1' for read\n").arg(file);
}
inline QString cannotOpen(const QString& file) {
  return QStringLiteral("ERROR: Can't open file '%1' for read.").arg(file);
}
inline QString cannotOpenSideFile(const QString& file) {
  return QStringLiteral("ERROR: Cannot open Column-Set file '%1'.").arg(file);
}
inline QString unreadable(const QString& file) {
  return QStringLiteral("ERROR: Can't read file '%1': File is corrupted.").arg(file);
}
inline QString journalDamagedOnRead(const QString& file, const QString& journal) {
  return QStringLiteral(
             "ERROR: Can't read file '%1': a new table was taking its place, and the list of "
             "what is left to do, '%2', is damaged. Write the table anew.")
      .arg(file, journal);
}
inline QString incompleteRefused(const QString& file) {
  return QStringLiteral("ERROR: Can't read file '%1' because it seems incomplete.").arg(file);
}
inline QString incomplete(const QString& file) {
  return QStringLiteral("WARNING: File '%1' is incomplete.").arg(file);
}

// Columns.
inline QString columnNotInFile(const QString& column, const QString& file) {
  return QStringLiteral("The column '%1' is not in the file '%2'.").arg(column, file);
}
inline QString filterColumnMissing(const QString& column) {
  return QStringLiteral("ERROR: column '%1' in expression is missing.").arg(column);
}
inline QString filterColumnIsText(const QString& column) {
  return QStringLiteral(
             "The column '%1' in the block filter holds texts. Give its CInputVar "
             "isNumber='0', or meta='D' when they are dates.")
      .arg(column);
}

// Damage: the file, the rows of the damaged block.
inline QString corruptedSkipped(const QString& file, std::uint64_t firstRow,
                                std::uint64_t lastRow) {
  return QStringLiteral("Warning: file '%1' is corrupted - skipping rows %2 to %3")
      .arg(file, QString::number(firstRow), QString::number(lastRow));
}
inline QString moreCorruptions(const QString& file) {
  return QStringLiteral("Warning: file '%1' is corrupted - some more corruptions are not reported")
      .arg(file);
}
inline QString corrupted(const QString& file, std::uint64_t firstRow) {
  return QStringLiteral("Error: file '%1' is corrupted in data-block starting at row %2")
      .arg(file, QString::number(firstRow));
}
inline QString truncatedSkipped(const QString& file, std::uint64_t firstRow) {
  return QStringLiteral("Warning: file '%1' is truncated in data-block starting at row %2")
      .arg(file, QString::number(firstRow));
}
inline QString truncated(const QString& file, std::uint64_t firstRow) {
  return QStringLiteral("Error: file '%1' is truncated in data-block starting at row %2")
      .arg(file, QString::number(firstRow));
}

// What follows one of them, once a file.
inline QString damageAdvice(const QString& file) {
  return QStringLiteral(
             "'kelvarin gel verify' names each damaged place of '%1'. What is whole in its "
             "column-set files can be written to a new table: kelvarin gel recover '%1' "
             "recovered.cgel_kelvarin")
      .arg(file);
}
inline QString foreignSideFile(const QString& file) {
  return QStringLiteral(
             "The values in a column-set file of '%1' are sound, but not those that the main "
             "file describes: the file of another table may have taken its place, or the main "
             "file is an older one. 'kelvarin gel verify' names the columns.")
      .arg(file);
}
inline QString beyondLimits(const QString& file) {
  return QStringLiteral(
             "A part of '%1' says that it needs far more memory than the files justify, so it "
             "was not read. 'kelvarin gel verify' names the place.")
      .arg(file);
}
inline QString incompleteAdvice(const QString& file) {
  return QStringLiteral(
             "The writer of '%1' is at work or was stopped. With readIncompleteFile its "
             "finished rows are read; after a stop, more of them come with: kelvarin gel "
             "recover '%1' recovered.cgel_kelvarin")
      .arg(file);
}
inline QString stoppedWriterAdvice(const QString& file) {
  return QStringLiteral(
             "The writer of '%1' was stopped. Rows that no descriptor describes yet may be "
             "whole in its column-set files: kelvarin gel recover '%1' recovered.cgel_kelvarin")
      .arg(file);
}
inline QString stillWritten(const QString& file) {
  return QStringLiteral(
             "The file '%1' is still being written. The rows that its writer has finished were "
             "read.")
      .arg(file);
}
inline QString noMemory(const QString& file, std::uint32_t rowsInBlock, std::size_t columnCount) {
  return QStringLiteral(
             "The memory does not suffice to read file '%1', with blocks of up to %2 rows in "
             "%3 columns. Read fewer columns, or lower nBlockForward.")
      .arg(file, QString::number(rowsInBlock), QString::number(columnCount));
}

// The block filter.
inline QString filterOff() {
  return QStringLiteral(
      "CFilterRows has an expression, but filterRows='1' is not set: every block is "
      "read.");
}
inline QString filterEmpty() {
  return QStringLiteral(
      "filterRows='1' is set, but there is no expression in CFilterRows: every block is "
      "read.");
}
inline QString filterFailed(const QString& reason) {
  return QStringLiteral("Columnar Reader Error in the block filter: %1").arg(reason);
}
inline QString dateFormatUnknown() {
  return QStringLiteral("Columnar Reader Error: Date format is unknown");
}
inline QString filterReferenceUnparsable() {
  return QStringLiteral(
      "Cannot parse Reference time. We will use 1970-01-01T00:00:00.000 as reference "
      "time.");
}

// Writing columnar files.
inline QString noFilename() {
  return QStringLiteral("No filename?");
}
inline QString cannotOpenForWrite(const QString& file) {
  return QStringLiteral("Cannot open file '%1' for write.").arg(file);
}
inline QString cannotWriteFile(const QString& file) {
  return QStringLiteral("Cannot write to file '%1'.").arg(file);
}
inline QString systemReason(const QString& file, const QString& reason) {
  return QStringLiteral(
             "The system's reason for file '%1': %2. Check the folder, its permissions and the "
             "room on its disk.")
      .arg(file, reason);
}
inline QString tooLarge() {
  return QStringLiteral("columnarWrite ERROR: decrease number of columns or blocksize.\n");
}
inline QString noColumnsToWrite(const QString& file) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': no column of the table is in the column "
             "strategy. Add one, or set columnStrategy to 0.")
      .arg(file);
}
inline QString noRowsInBlock(const QString& file, int rowsInBlock) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': nRowsInBlock is %2. Set it to 1 or more.")
      .arg(file, QString::number(rowsInBlock));
}

// Settings that others turn off.
inline QString testOff() {
  return QStringLiteral("testCol has no effect without writeAllRows='0': every row is written.");
}
inline QString strategyOff() {
  return QStringLiteral(
      "The columns listed in ColumnStrategy have no effect without columnStrategy='1'.");
}

// Rows that are tested.
// kept: it names CSV
inline QString testColumnMissing(const QString& file, const QString& column) {
  return QStringLiteral("\nERROR writing to CSV file '%1': cannot find column '%2' to test\n")
      .arg(file, column);
}

// Files that are split.
inline QString splitColumnMissing(const QString& file, const QString& column) {
  return QStringLiteral(
             "\nERROR writing to Kelvarin CGel file '%1': cannot find column '%2' for split\n")
      .arg(file, column);
}
inline QString splitNotSorted() {
  return QStringLiteral(
      "WARNING writing to Kelvarin CGel file: The table to split is not sorted on the "
      "split variable: The number of splits (i.e. the number of files) is limited to "
      "the maximum number of simultaneous opened file allowed by the OS.\n");
}
inline QString splitValueReturns(const QString& file, const QString& value) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': the value '%2' of the split column comes "
             "back, though the table is declared sorted on that column. Sort the table, or "
             "remove the declaration.")
      .arg(file, value);
}
inline QString splitNamesMeet(const QString& file, const QString& value,
                              const QString& otherValue) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': two values of the split column, '%2' and "
             "'%3', give this same file name. Rename one of them, or use advancedNaming.")
      .arg(file, value, otherValue);
}
inline QString splitSideFilesMeet(const QString& file, const QString& value,
                                  const QString& otherValue) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': two values of the split column, '%2' and "
             "'%3', give files that differ only after the last point and so have the same side "
             "files. Give the file an extension, or use advancedNaming.")
      .arg(file, value, otherValue);
}
inline QString namingFailed(const QString& file, const QString& expression, const QString& reason) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': the naming expression '%2' cannot be used: "
             "%3")
      .arg(file, expression, reason);
}

// What is there already.
inline QString foreignFile(const QString& file) {
  return QStringLiteral(
             "The file '%1' is no columnar file, and it is replaced by one. Is the name right?")
      .arg(file);
}
inline QString sideFilesOfAnother(const QString& file, const QString& other) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': the columnar file '%2' has side files of the "
             "same names, which would be lost. Give this one another name before its last "
             "point, or remove the other with its side files.")
      .arg(file, other);
}
inline QString oldFileStays(const QString& file) {
  return QStringLiteral(
             "No row was written, so the file '%1' of an earlier run stays as it is. Set "
             "alwaysDelete to 1 to remove it then.")
      .arg(file);
}

// Files that replace others at the end.
inline QString journalDamagedOnWrite(const QString& file, const QString& journal) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': an earlier table was taking its place, and "
             "the list of what is left to do, '%2', is damaged. Look at the files, and remove "
             "the list when they can be replaced.")
      .arg(file, journal);
}
inline QString exchangeUnfinished(const QString& file, const QString& reason) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': an earlier table is taking its place, and "
             "this cannot be finished: %2.")
      .arg(file, reason);
}
inline QString notExchanged(const QString& file, const QString& reason) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': the new table could not take its place: %2. "
             "The file is as it was.")
      .arg(file, reason);
}
inline QString exchangeLeft(const QString& file, const QString& reason) {
  return QStringLiteral(
             "Writing to Kelvarin CGel file '%1': the new table is whole, but not all of its "
             "files could take their names: %2. Whoever opens the file next goes on with it.")
      .arg(file, reason);
}

// The previous file.
inline QString previousLocked(const QString& file) {
  return QStringLiteral("Warning: File '%1' is locked. Waiting for the file to unlock...")
      .arg(file);
}
inline QString previousUnlocked() {
  return QStringLiteral("File is unlocked!");
}
inline QString previousNotDeleted(const QString& file) {
  return QStringLiteral("Error: Cannot delete previous file '%1'.").arg(file);
}

// What an editor does with a table outside a run.
inline QString noFileChosen() {
  return QStringLiteral("No file is chosen yet.");
}
inline QString filesKnownInRun() {
  return QStringLiteral(
      "The names of the files come from the input pin, so they are known in a run only.");
}
inline QString folderInUse(const QString& file) {
  return QStringLiteral(
             "The folder of '%1' is in use by another program that writes columnar files. Try "
             "again when it has finished.")
      .arg(file);
}

// Deleting a table.
inline QString deleted(const QString& file) {
  return QStringLiteral("SUCCESS: File '%1' deleted.").arg(file);
}
inline QString notDeleted(const QString& file, const QString& reason) {
  return QStringLiteral("The file '%1' cannot be deleted: %2.").arg(file, reason);
}
inline QString nothingToDelete(const QString& file) {
  return QStringLiteral("There is no file '%1', and no column-set file of it: nothing was deleted.")
      .arg(file);
}
inline QString beingWritten(const QString& file) {
  return QStringLiteral("The file '%1' is being written, so nothing was deleted.").arg(file);
}
inline QString foreignNotDeleted(const QString& file) {
  return QStringLiteral("The file '%1' is no columnar file, so nothing was deleted.").arg(file);
}
inline QString sharedNotDeleted(const QString& file, const QString& other) {
  return QStringLiteral(
             "The column-set files of '%1' have the names of those of '%2', so nothing was "
             "deleted.")
      .arg(file, other);
}

// Salvaging a table.
inline QString salvageNameTaken(const QString& file) {
  return QStringLiteral(
             "There is a file '%1' already, or column-set files of that name. Choose another name "
             "for the new table.")
      .arg(file);
}
inline QString sideFileNeeded(const QString& file) {
  return QStringLiteral(
             "The column-set file '%1' cannot be opened. It belongs beside the main file.")
      .arg(file);
}
inline QString notWritten(const QString& file, const QString& reason) {
  return QStringLiteral("The new table '%1' cannot be written: %2.").arg(file, reason);
}
inline QString salvageTooLarge(const QString& file) {
  return QStringLiteral("The new table '%1' cannot be written: its blocks are too large.")
      .arg(file);
}

}  // namespace kelvarin::columnar_messages

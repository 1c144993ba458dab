// The texts of `kelvarin gel`.
#pragma once

#include <cstdint>

#include <QString>

namespace kelvarin::gel_messages {

inline QString cannotOpenSide(const QString& file) {
  return QStringLiteral("Cannot open the column-set file '%1'. It belongs beside the main file.")
      .arg(file);
}

inline QString incomplete(const QString& file) {
  return QStringLiteral("'%1' is incomplete: its writer has not finished, or was stopped.")
      .arg(file);
}

inline QString rowsLost(const QString& file, std::uint64_t firstRow, std::uint64_t lastRow) {
  return QStringLiteral("'%1' is damaged: rows %2 to %3 cannot be read.")
      .arg(file, QString::number(firstRow), QString::number(lastRow));
}

inline QString fileCut(const QString& file, std::uint64_t row) {
  return QStringLiteral("'%1' is cut: nothing from row %2 on can be read.")
      .arg(file, QString::number(row));
}

inline QString moreLost(const QString& file, std::size_t count) {
  return QStringLiteral("'%1' is damaged at %2 more places, which are not listed.")
      .arg(file, QString::number(count));
}

inline QString noMemory(const QString& file) {
  return QStringLiteral("'%1': the memory does not suffice for a block of rows.").arg(file);
}

inline QString sameFile(const QString& file) {
  return QStringLiteral(
             "The file '%1' would be replaced by what is made of it. Give the other file "
             "another name.")
      .arg(file);
}

inline QString nameOfAnotherKind(const QString& file) {
  return QStringLiteral(
             "'%1' is a name for another kind of table. Columnar files end in .cgel_kelvarin.")
      .arg(file);
}

inline QString written(const QString& rows, const QString& file) {
  return QStringLiteral("%1 written to '%2'.").arg(rows, file);
}

inline QString writtenByValue(const QString& rows, const QString& files, const QString& column) {
  return QStringLiteral("%1 written to '%2', a file for each value of '%3'.")
      .arg(rows, files, column);
}

inline QString noRows(const QString& input, const QString& output) {
  return QStringLiteral(
             "'%1' has no rows, so nothing was written. A file '%2' that was there before is "
             "unchanged.")
      .arg(input, output);
}

inline QString unknownExtension(const QString& file, const QString& known) {
  return QStringLiteral("The kind of the file '%1' is told by its extension, which is one of: %2.")
      .arg(file, known);
}

// What a recovery has found.
inline QString recoverName(const QString& file, const QString& known) {
  return QStringLiteral(
             "The extension of '%1' does not say what to make of the table. It is one of: "
             "cgel_kelvarin, %2.")
      .arg(file, known);
}

inline QString recoverOntoItself(const QString& input, const QString& output,
                                 const QString& shared) {
  return QStringLiteral(
             "'%1' and '%2' would share the file '%3'. Give the recovered table another name.")
      .arg(input, output, shared);
}

inline QString recovered(const QString& rows, const QString& blocks, const QString& file) {
  return QStringLiteral("%1 in %2 recovered to '%3'.").arg(rows, blocks, file);
}

inline QString foundBlocks(const QString& blocks) {
  return QStringLiteral(
             "Of them, %1 had no sound descriptor and came from the column-set files alone.")
      .arg(blocks);
}

inline QString lost(const QString& blocks, const QString& rows, const QString& file) {
  return QStringLiteral("%1 with %2 of '%3' could not be recovered.").arg(blocks, rows, file);
}

inline QString lostUncounted(const QString& file) {
  return QStringLiteral(
             "'%1' is damaged where no descriptor counts the blocks: some rows could not be "
             "recovered, and those before and after them now follow one another.")
      .arg(file);
}

inline QString unfinished(const QString& file) {
  return QStringLiteral(
             "The column-set files of '%1' end with a block that its writer had not finished. "
             "Its rows were not taken.")
      .arg(file);
}

inline QString nothingRecovered(const QString& input, const QString& output) {
  return QStringLiteral(
             "'%1' has no whole block of rows, so nothing was written. A file '%2' that was "
             "there before is unchanged.")
      .arg(input, output);
}

inline QString recoverAdvice(const QString& file) {
  return QStringLiteral(
             "What is whole in the column-set files can be recovered with: kelvarin gel "
             "recover '%1' recovered.cgel_kelvarin")
      .arg(file);
}

// What a comparison has found.
inline QString areEqual(const QString& rows) {
  return QStringLiteral("equal: the same columns, and %1 with the same values\n").arg(rows);
}

inline QString onlyIn(const QString& column, const QString& file) {
  return QStringLiteral("column '%1' is only in '%2'\n").arg(column, file);
}

inline QString differsIn(const QString& what, const QString& column, const QString& left,
                         const QString& right) {
  return QStringLiteral("column '%1' differs in its %2: %3, %4\n").arg(column, what, left, right);
}

inline QString rowCountsDiffer(std::uint64_t left, std::uint64_t right) {
  return QStringLiteral("numbers of rows: %1, %2\n")
      .arg(QString::number(left), QString::number(right));
}

inline QString firstDifference(std::uint64_t row, const QString& column, const QString& left,
                               const QString& right) {
  return QStringLiteral("first difference in row %1, column '%2': %3, %4\n")
      .arg(QString::number(row), column, left, right);
}

inline QString differingRows(const QString& column, const QString& rows) {
  return QStringLiteral("column '%1' differs in %2\n").arg(column, rows);
}

inline QString notComparable(const QString& file) {
  return QStringLiteral(
             "Rows of '%1' cannot be read, so the tables were not compared any further. 'kelvarin "
             "gel verify' lists what is damaged.")
      .arg(file);
}

// What a verification has found.
inline QString moreDamage(const QString& file, std::uint64_t count) {
  return QStringLiteral("%1: %2 more damaged places are not listed\n")
      .arg(file, QString::number(count));
}

inline QString verified(const QString& file, const QString& rows, const QString& blocks,
                        const QString& chunks, const QString& verdict) {
  return QStringLiteral("%1: %2 in %3, %4 read: %5\n").arg(file, rows, blocks, chunks, verdict);
}

// What is counted where there is damage.
inline const char* damageNoun() {
  return "damaged place";
}

inline QString noDamage() {
  return QStringLiteral("no damage");
}

inline QString incompleteButSound() {
  return QStringLiteral("no damage, but the file is incomplete");
}

}  // namespace kelvarin::gel_messages

// The texts of `kelvarin calc`.
#pragma once

#include <QString>

namespace kelvarin::calc_messages {

inline QString unknownType(const QString& output, const QString& type) {
  return QStringLiteral(
             "The output '%1' has the type '%2'. It takes F (number), K (key) or U (text), or none "
             "for the type of the result.")
      .arg(output, type);
}

inline QString withoutExpression(const QString& output) {
  return QStringLiteral(
             "The output '%1' has no expression. Write one behind '=', for instance %1=1.")
      .arg(output);
}

inline QString unclosedName(qsizetype position) {
  return QStringLiteral(
             "The name that opens at position %1 has no closing backquote, or nothing is between "
             "its backquotes. Write it: `unit price`. A backquote in a name is written twice.")
      .arg(position);
}

inline QString parameterIsColumn(const QString& name) {
  return QStringLiteral(
             "'%1' is a column and a parameter of --set. Give the parameter another name, or write "
             "the column in backquotes: `%1`.")
      .arg(name);
}

inline QString outputTwice() {
  return QStringLiteral(
      "there is one of this name before it, and nothing has used that. Give one of both another "
      "name.");
}

// What an expression is for, before what is wrong with it.
inline QString ofOutput(const QString& name) {
  return QStringLiteral("Output '%1': ").arg(name);
}

inline QString ofFilter() {
  return QStringLiteral("Filter: ");
}

inline QString ofDate(const QString& name) {
  return QStringLiteral("--date %1: ").arg(name);
}

inline QString dateIsNumber() {
  return QStringLiteral("its values are numbers, and dates are texts. Leave --date out for it.");
}

// After the hint at an unknown name, which replaces `%1`.
inline const char* quoteColumns() {
  return "If '%1' is part of a column's name that has blanks or signs, write the whole name in "
         "backquotes.";
}

inline QString secondInput(const QString& first, const QString& second) {
  return QStringLiteral(
             "There are two files to read, '%1' and '%2'. An output is written NAME=EXPRESSION, a "
             "condition stands behind --filter.")
      .arg(first, second);
}

// Behind the message about the missing file.
inline QString takenForInput(const QString& argument) {
  return QStringLiteral(
             "'%1' was taken for the file to read. An output is written NAME=EXPRESSION, a "
             "condition stands behind --filter.")
      .arg(argument);
}

inline QString takenForOutput(const QString& argument) {
  return QStringLiteral(
             "There is a file '%1', but a name and '=' make it an output. To read it, write "
             "--input '%1'.")
      .arg(argument);
}

inline QString noInput() {
  return QStringLiteral(
      "There is no file to read, and standard input is a terminal. Name a file, or write "
      "--input - to type the rows.");
}

inline QString inputBroken(const QString& reason) {
  return QStringLiteral(
             "Standard input could not be read to its end: %1. What was written has only the rows "
             "before.")
      .arg(reason);
}

inline QString unknownKind(const QString& file, const QString& known) {
  return QStringLiteral(
             "The extension of '%1' does not say what to make of the table. It is one of: %2, "
             "cgel_kelvarin. Or say it with --to csv, tsv, parquet, arrow or gel.")
      .arg(file, known);
}

inline QString columnarNeedsFile() {
  return QStringLiteral(
      "A columnar file has files beside it, so it cannot go to standard output. Name it with "
      "--output.");
}

inline QString splitNeedsFile() {
  return QStringLiteral(
      "--split-by writes a file for each value, so the rows cannot go to standard output. Name the "
      "files with --output.");
}

inline QString noTypesToStore(const QString& kind) {
  return QStringLiteral(
             "--store names types of Parquet and Arrow files; tables of the kind %1 have no others "
             "than rows.")
      .arg(kind);
}

inline QString needsFile(const QString& kind) {
  return QStringLiteral(
             "Tables of the kind %1 are read from several places, which a pipe does not have. Name "
             "a file, or pass one: < FILE.")
      .arg(kind);
}

inline QString notToTerminal() {
  return QStringLiteral(
      "Standard output is a terminal, and Parquet and Arrow are no text. Name a file with "
      "--output, or write CSV.");
}

inline QString graphReplacesTable(const QString& file) {
  return QStringLiteral(
             "The graph would replace the table '%1'. Give it a name of its own, such as "
             "steps.kelvarin.")
      .arg(file);
}

inline QString graphSaved(const QString& file) {
  return QStringLiteral("The graph is saved in '%1'.").arg(file);
}

}  // namespace kelvarin::calc_messages

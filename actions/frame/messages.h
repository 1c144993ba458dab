// The texts that the expression actions and the frame around all actions log.
//
// What an expression's own failure looks like is in expression/errors.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::messages {

inline QString runningNotAvailable(const QString& typeName, const QString& name) {
  return QStringLiteral(
             "%1 '%2': running this action is not available in this version. "
             "Remove it from the graph to run the rest.")
      .arg(typeName, name);
}

inline QString referenceTimeUnparsableInCalculator() {
  return QStringLiteral(
      "Calculator: Cannot parse Reference time. We will use 19700101 00:00:00 as reference time.");
}
inline QString dateFormatUnknownInRun() {
  return QStringLiteral("filterRow error: Date format is unknown");
}

inline QString nullKeyRefused(const QString& variable, long long row) {
  return QStringLiteral(
             "Null key: variable '%1' has no value on row %2. Set castToKey3 to 0 (null) or 1 "
             "(zero) to "
             "go on with such rows.")
      .arg(variable, QString::number(row));
}

inline QString columnToUpdateNotFound(const QString& name) {
  return QStringLiteral("ERROR: column to update '%1' not found.\n").arg(name);
}
inline QString columnProducedTwice(const QString& name) {
  return QStringLiteral("Error: Updating/Creating the column '%1' several times.").arg(name);
}

inline QString unknownCastCode(const QString& alias, QChar code) {
  return QStringLiteral(
             "Error: The table of variables gives '%1' the type '%2'. It takes F or K (number), U "
             "(text) "
             "or D (date).")
      .arg(alias, QString(code));
}
inline QString variableWithoutColumn(long long row) {
  return QStringLiteral(
             "Error: The table of variables names no column on its row %1. Each row needs an alias "
             "and a "
             "column name.")
      .arg(row);
}

inline QString vectorTableTooNarrow() {
  return QStringLiteral(
      "Error: The table on Pin 1 must have at least 3 columns (AliasName,VarName,castToNumber).");
}
inline QString noVectors() {
  return QStringLiteral("Warning: No vector as input?");
}
inline QString vectorOfWrongSize(const QString& alias) {
  return QStringLiteral("Error: Vector of wrong size when defining variable '%1'?").arg(alias);
}
// `aliases` has one or more.
inline QString vectorsDefinedAgain(const QStringList& aliases) {
  const QString others = aliases.size() == 1
                             ? QString()
                             : QStringLiteral(" (and %1 more)").arg(aliases.size() - 1);
  return QStringLiteral(
             "The table on Pin 1 defines the variable '%1'%2 several times: expressions see the "
             "first. A vector's rows must follow each other.")
      .arg(aliases.first(), others);
}
inline QString vectorTableNotRead() {
  return QStringLiteral(
      "Error: The copy of this action that reads the table on Pin 1 ended without reading it.");
}
inline QString nameIsNoText(const QString& nameExpression) {
  return QStringLiteral("Math Parser Error in expression '%1':\nResult is not a string")
      .arg(nameExpression);
}
inline QString nameExpressionFailed(const QString& nameExpression, const QString& errorText) {
  return QStringLiteral("Math Parser Error in name expression '%1':\n").arg(nameExpression) +
         errorText;
}

}  // namespace kelvarin::messages

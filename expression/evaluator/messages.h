// The texts about variables, columns and results of expressions, once each.
#pragma once

#include <QString>

#include "expression/backends/text_arguments.h"

namespace kelvarin::messages {

inline QString columnNotFound(const QString& column) {
  return QStringLiteral("Error: Column '%1' not found").arg(column);
}
inline QString columnTypesDiffer(const QString& first, const QString& second) {
  return QStringLiteral("Error: Column '%1' and '%2' must have the same type").arg(first, second);
}

// About an expression that does what its author hardly means.
inline QString assigns(const QString& expressionName) {
  return QStringLiteral("Expression '%1': '=' assigns; did you mean '=='?").arg(expressionName);
}
inline QString assignsInCondition(const QString& expressionName) {
  return assigns(expressionName) +
         QStringLiteral(
             " The assigned value is the condition: true unless it is 0, missing or an empty "
             "text.");
}
inline QString chained(const QString& expressionName, const QString& chain,
                       const QString& firstComparison, const QString& meant) {
  return QStringLiteral(
             "Expression '%1': comparisons do not chain: '%2' compares 1 or 0, the result of '%3'. "
             "Did you mean '%4'?")
      .arg(expressionName, chain, firstComparison, meant);
}
inline QString textCondition(const QString& expressionName) {
  return QStringLiteral(
             "Expression '%1': the condition is a text, and so true for every row on which the "
             "text is not empty. Compare it, as in x == \"abc\".")
      .arg(expressionName);
}
inline QString equalsNull(const QString& expressionName, const QString& value) {
  return QStringLiteral("Expression '%1': '== _null' is never true; did you mean 'isNull(%2)'?")
      .arg(expressionName, value);
}
inline QString differsFromNull(const QString& expressionName, const QString& value) {
  return QStringLiteral(
             "Expression '%1': '!= _null' is always true; did you mean 'not(isNull(%2))'?")
      .arg(expressionName, value);
}

// About the names of variables.
inline QString nameOfRowNumber(const QString& column) {
  return QStringLiteral(
             "Error: Column '%1' cannot have the label '_n', which is the number of the row. Give "
             "it another label, or set addN='0' to do without the number.")
      .arg(column);
}
inline QString nameTwice(const QString& name, const QString& column, const QString& other) {
  return QStringLiteral(
             "The variable '%1' is defined twice, by column '%2' and by column '%3': expressions "
             "see the first one. Give the other a label of its own.")
      .arg(name, column, other);
}
inline QString moreNamesTwice(int count) {
  return QStringLiteral("%1 more variable(s) are defined twice.").arg(count);
}

inline QString rowText(double row) {
  return QString::number(row, 'f', 0);
}

// In a check, and at the end of a run.
inline QString textArgument(const QString& expressionName, const TextArguments& found) {
  return QStringLiteral(
             "Expression '%1': the function '%2' at position %4 takes its argument %3, a text or "
             "an array, for 0. Write atof() around a text that is a number.")
      .arg(expressionName, found.function, QString::number(found.argument),
           QString::number(found.position));
}
inline QString textArgumentsOfRun(const QString& expressionName, const TextArguments& found) {
  return QStringLiteral(
             "Expression '%1': the function '%2' at position %4 took its argument %3, a text or "
             "an array, for 0 on %5 occasion(s), the first one on data row %6. Write atof() around "
             "a text that is a number.")
      .arg(expressionName, found.function, QString::number(found.argument),
           QString::number(found.position), QString::number(found.count), rowText(found.row));
}

// At the end of a run.
inline QString notNumbers(const QString& column, long long count, double firstRow) {
  return QStringLiteral(
             "Column '%1' is a text column used as a number: %2 value(s) were no numbers and "
             "counted as missing, the first one on data row %3 (counted from 0).")
      .arg(column, QString::number(count), rowText(firstRow));
}
inline QString moreNotNumbers(int columns, const QString& variable, long long count) {
  return QStringLiteral(
             "%1 more column(s) of the variable '%2' are text columns used as numbers: %3 value(s) "
             "were no numbers and counted as missing.")
      .arg(QString::number(columns), variable, QString::number(count));
}
// What a date that could not be read counts as.
inline QString countedAs(bool isMissing) {
  return isMissing ? QStringLiteral("missing") : QStringLiteral("0");
}
inline QString notDates(const QString& column, const QString& format, long long count,
                        bool isMissing, const QString& first, double firstRow) {
  return QStringLiteral(
             "Column '%1' holds dates in the format '%2': %3 value(s) could not be read and count "
             "as %4, the first one '%5' on data row %6 (counted from 0).")
      .arg(column, format, QString::number(count), countedAs(isMissing), first, rowText(firstRow));
}
inline QString moreNotDates(int columns, const QString& variable, long long count, bool isMissing) {
  return QStringLiteral(
             "%1 more column(s) of the variable '%2' hold dates: %3 value(s) could not be read and "
             "count as %4.")
      .arg(QString::number(columns), variable, QString::number(count), countedAs(isMissing));
}
inline QString failedEvaluations(long long count, const QString& name, double firstRow,
                                 const QString& message) {
  return QStringLiteral(
             "%1 evaluation(s) failed and gave no value. The first was expression '%2' on data row "
             "%3 (counted from 0): %4")
      .arg(QString::number(count), name, rowText(firstRow), message);
}
inline QString failedFilterRows(long long count, const QString& name, double firstRow,
                                const QString& message) {
  return QStringLiteral(
             "%2: the expression failed on %1 row(s), which went to output pin 1 (the second pin), "
             "as rows do for which it is false. The first was data row %3 (counted from 0): %4")
      .arg(QString::number(count), name, rowText(firstRow), message);
}

}  // namespace kelvarin::messages

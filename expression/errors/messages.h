// Every text about a wrong expression that a user can read, once.
#pragma once

#include <cstdint>

#include <QString>

namespace kelvarin::messages {

// Run time. Between opening and row line stands the library's message.
inline QString calculatorOpening(const QString& expressionName) {
  return QStringLiteral("Math Parser Error in expression named '%1':\n ").arg(expressionName);
}
inline QString vectorizedOpening(const QString& expressionName) {
  return QStringLiteral("Math Parser Error in expression '%1':\n ").arg(expressionName);
}
inline QString filterOpening() {
  return QStringLiteral("MathParser Error in FilterRows:\n");
}
inline QString rowLine(std::int64_t row, int position, const QString& action) {
  return QStringLiteral(
             "\n On Data Row %1 at position %2: Please click the \"? (F7)\" check button inside "
             "the property window of the '%3' action to test & fix the expression.")
      .arg(QString::number(row), QString::number(position), action);
}
// kept: two blanks before "inside" in the String back-end.
inline QString rowLineOfString(std::int64_t row, int position, const QString& action) {
  return QStringLiteral(
             "\n On Data Row %1 at position %2: Please click the \"? (F7)\" check button  inside "
             "the property window of the '%3' action to test & fix the expression.")
      .arg(QString::number(row), QString::number(position), action);
}
inline QString positionLine(int position) {
  return QStringLiteral("\nAt position %1.").arg(position);
}
inline QString keyOutOfRange(const QString& output, std::int64_t row, double value) {
  return QStringLiteral(
             "Out of range: variable '%1' cannot be converted to key on row %2 (value=%3).")
      .arg(output, QString::number(row), QString::number(value));
}

// Check.
inline QString tokenLine(const QString& token) {
  return QStringLiteral("\n  Error Token:") + token;
}
inline QString checkPositionLine(int position) {
  return QStringLiteral("\n  Error at position:%1").arg(position);
}
inline QString numberForString() {
  return QStringLiteral("The expression evaluated to a Number and a String was expected");
}
inline QString stringForNumber() {
  return QStringLiteral("The expression evaluated to a String and a Number was expected");
}
inline QString formatUnknown() {
  return QStringLiteral("Math parser error:\n  Date format is unknown");
}
inline QString referenceUnparsable() {
  return QStringLiteral(
      "Cannot parse Reference time. We will use 1970-01-01T00:00:00.000 as reference time.");
}

// Phrases of messages that have an explanation picture.
inline QString undefinedTokenPhrase() {
  return QStringLiteral("Undefined token");
}
inline QString conversionPhrase() {
  return QStringLiteral("There is no implicit conversion to type");
}

// Behind the text of an error, to lead to its cause.
inline QString here() {
  return QStringLiteral("Here:");
}
inline QString expression() {
  return QStringLiteral("The expression:");
}
inline QString cut() {
  return QStringLiteral("...");
}
inline QString valuesOfRow(long long row, const QString& values) {
  return QStringLiteral("On data row %1 (counted from 0): %2").arg(QString::number(row), values);
}
inline QString sampleValues(const QString& values) {
  return QStringLiteral("Checked with the sample values %1.").arg(values);
}
inline QString tryIt(const QString& command) {
  return QStringLiteral("Try it: %1").arg(command);
}
inline QString numberBecomesText() {
  return QStringLiteral(
      "A run writes the number as its shortest text. Write meta='F' for a column of numbers, or "
      "make the text yourself, for instance with ftoa.");
}
inline QString sampleMayDiffer() {
  return QStringLiteral(
      "A row that fails so stops the run. Where it depends on the values, give the input variables "
      "sample values (attribute 'value') like those of your rows.");
}
inline QString failedRowsGoOn() {
  return QStringLiteral("The run goes on behind such rows, as abortWhenError='0' asks for.");
}
inline QString keyCastAdvice() {
  return QStringLiteral(
      "Keys are whole numbers from 0 to 4294967293. Let castToKey1 (out of range) or castToKey2 "
      "(fractions) be 0 (the key 0, or cut off) or 1 (missing) to go on with such rows.");
}
inline QString controlCharacterInName(int code, qsizetype position) {
  return QStringLiteral(
             "The resulting name has a control character (code %1) at position %2. Names of "
             "columns and files have none; replace() takes it out.")
      .arg(QString::number(code), QString::number(position));
}

// What a back-end refuses before its library sees it.
inline QString tooLong(qsizetype size) {
  return QStringLiteral(
             "The expression is too long: it has %1 characters, and at most 10000 are possible "
             "(19999 where every value is a number). Split it into several expressions.")
      .arg(size);
}
inline QString tooManyResults() {
  return QStringLiteral(
      "The expression gives several values, separated by commas; one was expected.");
}
inline QString nulCharacter() {
  return QStringLiteral("The expression holds a NUL character. Remove it.");
}
inline QString controlCharacter() {
  return QStringLiteral("The expression holds a control character. Remove it.");
}
inline QString unknownEscape() {
  return QStringLiteral("A text has an unknown escape. Known are \\n, \\r, \\t, \\\" and \\\\.");
}
inline QString tooDeep(int limit) {
  return QStringLiteral("Brackets are nested more than %1 deep. Split the expression.").arg(limit);
}
inline QString operandMissing(const QString& sign, qsizetype position) {
  return QStringLiteral("Unexpected operator \"%1\" found at position %2.")
      .arg(sign, QString::number(position));
}
inline QString unparsable() {
  return QStringLiteral("The expression cannot be understood. Check its operators.");
}
inline QString mixedBitOperators(const QString& engine) {
  return QStringLiteral(
             "The %1 takes bit operators of one kind only, and none beside comparisons. Use the "
             "String Parser.")
      .arg(engine);
}
inline QString notLatin1(const QString& engine) {
  return QStringLiteral("The %1 takes no character beyond Latin-1. Use the String Parser.")
      .arg(engine);
}
inline QString arrayResult() {
  return QStringLiteral("The expression evaluated to an array and a single value was expected");
}
inline QString tooManyElements(long long limit) {
  return QStringLiteral("An array of more than %1 elements was asked for.").arg(limit);
}
inline QString tooManyElementsInAll(long long limit) {
  return QStringLiteral("The arrays of this expression have more than %1 elements together.")
      .arg(limit);
}
inline QString arrayAssigned() {
  return QStringLiteral("An array cannot be assigned to a variable.");
}
inline QString textTooLong(long long limit) {
  return QStringLiteral("A text of more than %1 bytes would arise.").arg(limit);
}
inline QString textsTooLong(long long limit) {
  return QStringLiteral(
             "The texts of this expression, those on the way to its result included, take more "
             "than %1 bytes together.")
      .arg(limit);
}
inline QString outOfMemory() {
  return QStringLiteral("The memory does not suffice for this expression.");
}

}  // namespace kelvarin::messages

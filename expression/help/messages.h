// What a user may have meant by a wrong expression, in words. Signs and names of other languages
// have theirs in the tables of foreign_signs.cpp and foreign_names.cpp.
#pragma once

#include <QString>

namespace kelvarin::messages {

// The column as it is, as an attribute has it, and a label for it.
inline QString needsLabel(const QString& column, const QString& attribute, const QString& label) {
  return QStringLiteral(
             "Expressions cannot name the column '%1' as it is. Give it a label, "
             "<InputVar column='%2' label='%3'/>, and write %3.")
      .arg(column, attribute, label);
}
inline QString labelIsNoName(const QString& label, const QString& name) {
  return QStringLiteral(
             "The label '%1' is no name, so expressions cannot use it. Write "
             "label='%2', and %2 in the expression.")
      .arg(label, name);
}
inline QString signature(const QString& function, const QString& help) {
  return QStringLiteral("How '%1' is called: %2").arg(function, help);
}
inline QString otherArguments(int count, const QString& function, const QString& arguments) {
  return QStringLiteral("\n  With %1 argument(s): %2%3")
      .arg(QString::number(count), function, arguments);
}
inline QString thousands() {
  return QStringLiteral(
      "Numbers have no thousands separators: 1000000. A comma separates arguments.");
}
inline QString tooLarge(const QString& number) {
  return QStringLiteral("'%1' is too large for a number: the largest is about 1.8e308.")
      .arg(number);
}
inline QString unclosedText(std::size_t position) {
  return QStringLiteral(
             "The closing quote is missing of the text that opens at position %1. Write "
             "it: \"text\". A quote inside a text is written \\\".")
      .arg(position);
}
inline QString emptyExpression() {
  return QStringLiteral("The expression is empty. Write one, for instance: price * 2");
}
inline QString decimalPoint() {
  return QStringLiteral("Decimals are written with a point: 3.5. A comma separates arguments.");
}
inline QString joinTexts() {
  return QStringLiteral("Texts are joined with //, as in a // b. ");
}
inline QString textIsNoNumber() {
  return QStringLiteral("One value is a text. atof(s) gives the number that a text holds.");
}
inline QString numberIsNoText() {
  return QStringLiteral(
      "One value is a number where a text is needed. itoa(x) and ftoa(x) make texts of numbers, "
      "and texts of your own stand between double quotes.");
}
inline QString noCondition() {
  return QStringLiteral(
      "One value is a number where a condition is needed. Compare it, as in x != "
      "0, or write isTrue(x).");
}
inline QString joinConditions() {
  return QStringLiteral("Conditions are joined with && (and) and || (or).");
}
inline QString textForNumberColumn() {
  return QStringLiteral(
      "The result is a text. Write meta='U' for a column of texts, or atof(...) "
      "for the number that the text holds.");
}

inline QString operatorMissing(const QString& left, const QString& sign, const QString& right) {
  return QStringLiteral("An operator is missing between %1 and %2: write, for instance, %1 %3 %2.")
      .arg(left, right, sign);
}

inline QString columnWithoutVariable(const QString& column) {
  return QStringLiteral(
             "'%1' is a column of the input but not an input variable of this action. "
             "Add <InputVar column='%1'/>.")
      .arg(column);
}
inline QString otherName(const QString& name, const QString& names) {
  return QStringLiteral("There is no '%1' in expressions; use %2.").arg(name, names);
}
inline QString otherWriting(const QString& name, const QString& advice) {
  return QStringLiteral("There is no '%1' in expressions: %2").arg(name, advice);
}
inline QString clockIsOff(const QString& name, const QString& attribute) {
  return QStringLiteral("'%1' is offered when the action says %2='1'.").arg(name, attribute);
}
inline QString nearNames(const QString& name, const QString& names) {
  return QStringLiteral(
             "'%1' is neither an input variable nor part of the language. Did you mean "
             "%2?")
      .arg(name, names);
}
inline QString nothingNear(const QString& name, const char* languageList) {
  return QStringLiteral(
             "'%1' is neither an input variable nor part of the language, which %2 lists. A text "
             "of that wording is written \"%1\".")
      .arg(name, QString::fromLatin1(languageList));
}
inline QString variables(const QString& names) {
  return QStringLiteral(" The variables are: %1.").arg(names);
}

}  // namespace kelvarin::messages

// The texts that the expression actions and the frame around all actions log.
//
// What an expression's own failure looks like is in expression/errors.
#pragma once

#include <QString>
#include <QStringList>

#include "expression/evaluator/engine_choice.h"

namespace kelvarin::action_messages {

inline QString textEntersAsNumber(const QString& column) {
  return QStringLiteral(
             "The column '%1' holds texts and enters the expressions as a number, missing where a "
             "text is none. Write <InputVar column='%1' isNumber='0'/> for its texts.")
      .arg(column);
}
inline QString editorsNotLoaded(const QString& file, const QString& reason) {
  return QStringLiteral(
             "The property editors cannot be opened: %1 could not be loaded (%2). Install it "
             "beside the plug-in, from the same build; until then actions are edited in forms.")
      .arg(file, reason);
}
// In the report of a run, of the output of a filter.
inline QString condition() {
  return QStringLiteral("condition");
}
// Why an output is evaluated by no faster engine; empty where a token says it, or there is none.
inline QString reasonForEngine(EngineChoice::Reason reason) {
  switch (reason) {
    case EngineChoice::Reason::textResult:
      return QStringLiteral("its result is a text");
    case EngineChoice::Reason::observed:
      return QStringLiteral("a step debugger looks on");
    case EngineChoice::Reason::nativeIsOff:
      return QStringLiteral("native code is turned off");
    case EngineChoice::Reason::fastest:
    case EngineChoice::Reason::token:
    case EngineChoice::Reason::required:
      break;
  }
  return {};
}
inline QString outputWithoutName(int index) {
  return QStringLiteral(
             "The output number %1 (counted from 1) has no name. Write the name of its column: "
             "<OutputVar name='...'>.")
      .arg(index + 1);
}
inline QString outputWithoutExpression(const QString& name) {
  return QStringLiteral(
             "The output '%1' has no expression: its column is missing on every row. Write the "
             "expression between <OutputVar ...> and </OutputVar>.")
      .arg(name);
}
inline QString noOutputs(const QString& name) {
  return QStringLiteral(
             "There is no <OutputVar> inside <OutputVars>: one output '%1' without an expression "
             "is assumed, and its column is missing on every row.")
      .arg(name);
}
inline QString filterWithoutExpression() {
  return QStringLiteral(
      "There is no expression: every row goes to output pin 0. Write it between <Expression> and "
      "</Expression>.");
}
inline QString twoExpressionsOfOutput(const QString& name) {
  return QStringLiteral(
             "The output '%1' has an expression in its text and another one in the attribute "
             "'expression'. The text counts; take the attribute away.")
      .arg(name);
}
inline QString twoExpressionsOfFilter() {
  return QStringLiteral(
      "The filter has an expression in the attribute 'Expression' and another one in the element "
      "<Expression>. The attribute counts; take one of them away.");
}
inline QString columnExists(const QString& name) {
  return QStringLiteral(
             "The input has a column '%1' already. Give the output another name, or write "
             "update='1' to replace the column.")
      .arg(name);
}
inline QString outputTwice(const QString& name) {
  return QStringLiteral("Two outputs are called '%1'. Give each its own name.").arg(name);
}

inline QString referenceTimeUnparsableInCalculator() {
  return QStringLiteral(
      "Calculator: Cannot parse Reference time. We will use 19700101 00:00:00 as reference time.");
}
inline QString dateFormatNeeded() {
  return QStringLiteral(
      "The expressions read or print dates. Say how these are written, for instance "
      "dateFormat='yyyy-MM-dd', or set dateFormatType to a format of the system's locale (1 to "
      "6).");
}
inline QString dateFormatUnknownInRun() {
  return QStringLiteral("filterRow error: Date format is unknown");
}

inline QString nullKeyRefused(const QString& variable, long long row) {
  return QStringLiteral(
             "Null key: variable '%1' has no value on row %2 (counted from 0). Set castToKey3 to 0 "
             "(null) or 1 (zero) to go on with such rows.")
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
             "The table of variables gives '%1' the type '%2'. It takes F or K (number), U "
             "(text) "
             "or D (date).")
      .arg(alias, QString(code));
}
inline QString variableWithoutColumn(long long row) {
  return QStringLiteral(
             "The table of variables names no column on its row %1 (counted from 0). Each row "
             "needs an alias and a column name.")
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
inline QString vectorTableNotRead() {
  return QStringLiteral(
      "The copy of this action that reads the table on Pin 1 ended without reading it.");
}
inline QString nameIsNoText(const QString& nameExpression) {
  return QStringLiteral("Math Parser Error in expression '%1':\nResult is not a string")
      .arg(nameExpression);
}
inline QString nameExpressionFailed(const QString& nameExpression, const QString& errorText) {
  return QStringLiteral("Math Parser Error in name expression '%1':\n").arg(nameExpression) +
         errorText;
}

}  // namespace kelvarin::action_messages

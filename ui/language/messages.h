// What editors say about an expression, once each.
#pragma once

#include <QCoreApplication>
#include <QString>

namespace kelvarin::language_messages {

inline QString text(const char* words) {
  return QCoreApplication::translate("Language", words);
}

// Of a check.
inline QString tookTooLong() {
  return text(QT_TRANSLATE_NOOP(
      "Language",
      "The expression takes too long to be tried here: more than a second for a row. Write it "
      "shorter, or split it into several expressions."));
}
inline QString isBusy() {
  return text(QT_TRANSLATE_NOOP(
      "Language", "An earlier expression is still being evaluated, so this one is not tried."));
}
inline QString readsFile(const QString& function) {
  return text(QT_TRANSLATE_NOOP("Language",
                                "What '%1' reads is read at the start of a run, so there are no "
                                "values here."))
      .arg(function);
}
inline QString nullKey(const QString& variable) {
  return text(QT_TRANSLATE_NOOP("Language", "The key '%1' is missing, which stops the run."))
      .arg(variable);
}
inline QString columnIsGone(const QString& variable, const QString& column) {
  return text(QT_TRANSLATE_NOOP("Language",
                                "The variable '%1' has no column: the input has none that is "
                                "named '%2'."))
      .arg(variable, column);
}
inline QString unboundName(const QString& name) {
  return text(QT_TRANSLATE_NOOP("Language",
                                "'%1' is a column of the input, but no input variable yet. "
                                "Alt+Enter makes it one."))
      .arg(name);
}
inline QString notOffered(const QString& name) {
  return text(QT_TRANSLATE_NOOP("Language",
                                "'%1' is not offered to this expression. Tick \"add '%1' as input "
                                "var\" in the settings."))
      .arg(name);
}
inline QString textForNumber() {
  return text(QT_TRANSLATE_NOOP("Language",
                                "The result is a text, but the column takes numbers. Choose the "
                                "type Text, or write atof(...) for the number that the text "
                                "holds."));
}
inline QString unknownToDebugger(const QString& name) {
  return text(QT_TRANSLATE_NOOP("Language",
                                "The step debugger evaluates with the String parser, which does "
                                "not know '%1'."))
      .arg(name);
}
inline QString sameForBoth(const QString& name) {
  return u' ' +
         text(QT_TRANSLATE_NOOP("Language", "Write '%1', which all engines know.")).arg(name);
}

// Labels of quick fixes.
inline QString replaceBy(const QString& name) {
  return text(QT_TRANSLATE_NOOP("Language", "Replace by '%1'")).arg(name);
}
inline QString useColumn(const QString& column) {
  return text(QT_TRANSLATE_NOOP("Language", "Make the column '%1' an input variable")).arg(column);
}
inline QString compareInstead() {
  return text(QT_TRANSLATE_NOOP("Language", "Compare with '==' instead of assigning"));
}
inline QString closeText() {
  return text(QT_TRANSLATE_NOOP("Language", "Close the text with a quote"));
}
inline QString closeBrackets(const QString& brackets) {
  return text(QT_TRANSLATE_NOOP("Language", "Add the missing '%1' at the end")).arg(brackets);
}
inline QString joinTexts() {
  return text(QT_TRANSLATE_NOOP("Language", "Join the texts with '//'"));
}

// Types of results.
inline QString number() {
  return text(QT_TRANSLATE_NOOP("Language", "number"));
}
inline QString key() {
  return text(QT_TRANSLATE_NOOP("Language", "key"));
}
inline QString textType() {
  return text(QT_TRANSLATE_NOOP("Language", "text"));
}
inline QString date() {
  return text(QT_TRANSLATE_NOOP("Language", "date, as an elapsed time"));
}
inline QString trueOrFalse() {
  return text(QT_TRANSLATE_NOOP("Language", "true or false"));
}
inline QString numberAsText() {
  return text(QT_TRANSLATE_NOOP("Language", "number, stored as a text"));
}
inline QString numberAsCondition() {
  return text(QT_TRANSLATE_NOOP("Language", "number: true unless it is 0 or missing"));
}
inline QString textAsCondition() {
  return text(QT_TRANSLATE_NOOP("Language", "text: true unless it is empty or missing"));
}

// Engines. %1 is the engine's label.
inline QString notTakenBy(const QString& engine, const QString& faster, const QString& token) {
  return text(QT_TRANSLATE_NOOP("Language", "%1, because the %2 does not take '%3'"))
      .arg(engine, faster, token);
}
inline QString slower(const QString& engine, const QString& faster) {
  return text(QT_TRANSLATE_NOOP("Language", "%1, because the %2 does not take the expression"))
      .arg(engine, faster);
}
inline QString becauseText(const QString& engine) {
  return text(QT_TRANSLATE_NOOP("Language", "%1, because the result is a text")).arg(engine);
}
inline QString becauseObserved(const QString& engine) {
  return text(QT_TRANSLATE_NOOP("Language", "%1, because the step debugger looks on")).arg(engine);
}
inline QString becauseNativeIsOff(const QString& engine) {
  return text(QT_TRANSLATE_NOOP("Language", "%1, because the JIT compiler is switched off"))
      .arg(engine);
}

// Missing values. %1 is "null" or "NaN".
inline QString becauseOfVariable(const QString& kind, const QString& variable) {
  return text(QT_TRANSLATE_NOOP("Language", "%1 because `%2` is %1")).arg(kind, variable);
}
inline QString becauseOfPart(const QString& kind, const QString& part) {
  return text(QT_TRANSLATE_NOOP("Language", "%1 because `%2` gives %1")).arg(kind, part);
}

// Kinds of names, for completion.
inline QString parameter() {
  return text(QT_TRANSLATE_NOOP("Language", "graph parameter"));
}
inline QString unboundColumn() {
  return text(QT_TRANSLATE_NOOP("Language", "column, not yet an input variable"));
}
inline QString columnOfVariable(const QString& column) {
  return text(QT_TRANSLATE_NOOP("Language", "column '%1'")).arg(column);
}
inline QString rowNumber() {
  return text(QT_TRANSLATE_NOOP("Language", "number of the row, counted from 0"));
}
inline QString insteadOf(const QString& foreign) {
  return text(QT_TRANSLATE_NOOP("Language", "for '%1'")).arg(foreign);
}
inline QString engines(const QString& names) {
  return text(QT_TRANSLATE_NOOP("Language", "Engines: %1")).arg(names);
}

}  // namespace kelvarin::language_messages

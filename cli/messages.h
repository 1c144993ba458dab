// The texts of the program itself.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::program_messages {

inline QString usageHint(const QString& command) {
  return QStringLiteral("Run '%1 --help' for the options and an example.").arg(command);
}

inline QString windowsNotLoaded(const QString& file, const QString& reason) {
  return QStringLiteral(
             "No window can be opened: %1 could not be loaded (%2). Install the graphical part of "
             "kelvarin and Qt Widgets, or edit the graph as text.")
      .arg(file, reason);
}

inline QString needsNameAndValue(const QString& option, const QString& given) {
  return QStringLiteral("%1 takes NAME=VALUE, not '%2'.").arg(option, given);
}

inline QString notANumber(const QString& name, const QString& given) {
  return QStringLiteral(
             "The value of %1 is '%2', which is not a number (nan, inf, -inf and null are "
             "allowed).")
      .arg(name, given);
}

inline QString variableTwice(const QString& name) {
  return QStringLiteral("The variable '%1' is given twice.").arg(name);
}

inline QString variableIsRowNumber() {
  return QStringLiteral(
      "The variable '_n' is the number of the row. Give it another name, or add --opt "
      "addN=0 to do without the number.");
}

inline QString unknownExpressionOption(const QString& given, const QString& known) {
  return QStringLiteral("There is no expression option '%1'. There are: %2.").arg(given, known);
}

inline QString optionTakesInteger(const QString& option, const QString& given) {
  return QStringLiteral("The expression option '%1' takes a whole number, not '%2'.")
      .arg(option, given);
}

inline QString optionTakesFlag(const QString& option, const QString& given) {
  return QStringLiteral("The expression option '%1' takes 0 or 1, not '%2'.").arg(option, given);
}

inline QString here(const QString& marked) {
  return QStringLiteral("Here:\n  %1").arg(marked);
}

// After the hint at an unknown name, which replaces `%1`.
inline const char* giveValue() {
  return "Give a variable its value: --var %1=1 for a number, --text %1=abc for a text.";
}

inline QString giveDateFormat() {
  return QStringLiteral(
      "The expression reads or prints dates. Say how these are written: --opt "
      "dateFormat=yyyy-MM-dd");
}

inline QString unknownFunction(const QString& name) {
  return QStringLiteral("There is no function, constant or operator '%1'.").arg(name);
}

inline QString listHint() {
  return QStringLiteral("'kelvarin functions' lists all there are.");
}

inline const char* moreHint() {
  return "'kelvarin functions NAME' tells more about one of them.";
}

inline QString calledHere(const QString& name) {
  return QStringLiteral("'%1' is not called so here; this does it:").arg(name);
}

inline QString nothingLikeIt(const QString& name, const QString& advice) {
  return QStringLiteral("Nothing is called '%1' here. %2").arg(name, advice);
}

inline QString didYouMean(const QString& names) {
  return QStringLiteral("Did you mean %1?").arg(names);
}

inline const char* diskFullQuestion() {
  return "Retry or stop? [r/s] ";
}

inline QString diskFullWaiting(int seconds) {
  return QStringLiteral("Trying again for %1 seconds, then the run stops.")
      .arg(QString::number(seconds));
}

inline QString diskStillFull(int seconds, const QString& file) {
  return QStringLiteral("The disk was still full after %1 seconds; the run stops. File: '%2'.")
      .arg(QString::number(seconds), file);
}

inline QString rowsBesideJson(const QString& action) {
  return QStringLiteral(
             "The action '%1' writes its rows to standard output, where --json puts its "
             "object. Let it write to a file, or run without --json.")
      .arg(action);
}

// After a position in the graph file.
inline QString inAction(const QString& action, const QString& typeName) {
  return QStringLiteral("in the action '%1' (%2)").arg(action, typeName);
}

inline QString inOutput(const QString& output, const QString& action, const QString& typeName) {
  return QStringLiteral("in the output '%1' of the action '%2' (%3)").arg(output, action, typeName);
}

inline QString unknownCommand(const QString& given) {
  return QStringLiteral("There is no command '%1'.").arg(given);
}

// Of a command that other programs have; `use` is what to type here.
inline QString commandElsewhere(const QString& use) {
  return QStringLiteral(" Here it is: %1").arg(use);
}

inline QString noWholeNumber(const QString& given, const QString& least) {
  return QStringLiteral("'%1' is no whole number of %2 or more").arg(given, least);
}

inline QString noWholeNumberBetween(const QString& given, const QString& least,
                                    const QString& most) {
  return QStringLiteral("'%1' is no whole number from %2 to %3").arg(given, least, most);
}

inline QString noColumnType(const QString& given) {
  return QStringLiteral(
             "'%1' does not say the type of a column. Write the name, = and number, key or text, "
             "such as zip=text.")
      .arg(given);
}

inline QString optionBeforeCommand(const QString& option, const QString& command) {
  return QStringLiteral("'%1' is an option of '%2' and stands behind it: %2 %1")
      .arg(option, command);
}

inline QString unknownOption(const QString& given) {
  return QStringLiteral("There is no option '%1'.").arg(given);
}

// After it, where an expression is missing.
inline QString minusFirst(const QString& given) {
  return QStringLiteral(
             " An expression that begins with a minus stands behind --: kelvarin eval -- '%1'")
      .arg(given);
}

inline QString outputLost(const QString& reason) {
  return QStringLiteral("Standard output cannot be written: %1.").arg(reason);
}

inline QString interrupted() {
  return QStringLiteral(
      "Interrupted. Files that were being written are removed, but for columnar files, "
      "which say that they are incomplete.");
}

// Followed by what the exception says.
inline const char* internalError() {
  return "Internal error, please report it: ";
}

inline const char* unknownException() {
  return "an unknown exception";
}

inline const char* crashed() {
  return "The program has crashed. Files that were being written are removed, but for columnar "
         "files, which say that they are incomplete. Was there enough memory? If so, please "
         "report it.";
}

inline const char* outOfMemory() {
  return "Not enough memory. Nothing that was being written replaces a file. Free some memory, or "
         "work on fewer columns or smaller values at a time.";
}

// As the program writes it when it ends at once.
inline const char* interruptedLate() {
  return "warning: Interrupted. The run was waiting or computing and did not end within a second, "
         "so it was cut off. Files that were being written are removed, but for columnar files, "
         "which say that they are incomplete.\n";
}

inline QString checkFoundNothing(const QString& graph) {
  return QStringLiteral("%1: no problem found").arg(graph);
}

inline QString checkFoundNoError(const QString& graph) {
  return QStringLiteral("%1: no error found").arg(graph);
}

inline const char* checkRestsOnSamples() {
  return "Nothing was run: column types that a CSV file does not declare were inferred from its "
         "first 10000 rows, and expressions were tried with sample values.";
}

inline QString flowTitle() {
  return QStringLiteral(
      "columns behind each action (F number, K key, U text; + new, ~ of another "
      "type):\n");
}

inline QString flowOfAction(const QString& action, const QString& typeName, qsizetype count) {
  return QStringLiteral("  %1 (%2): %3 columns").arg(action, typeName, QString::number(count));
}

inline QString flowUnchanged() {
  return QStringLiteral(", those of its input");
}

inline QString moreColumns(qsizetype count) {
  return QStringLiteral(", ... and %1 more, which --json lists").arg(QString::number(count));
}

inline QString noCsvFile(const QString& file) {
  return QStringLiteral(
             "The options of CSV files mean nothing for '%1', which is none by its name. Leave "
             "them out, or, where it is one, give it a name with .csv at its end.")
      .arg(file);
}

inline QString nothingUnreadable(const QString& file) {
  return QStringLiteral(
             "--unreadable is about types of Parquet and Arrow files, and '%1' is none of these. "
             "Leave it out.")
      .arg(file);
}

// What does not fit into the width of a table.
inline QString hiddenColumns(const QStringList& names) {
  return QStringLiteral("... and %1 more %2: %3")
      .arg(QString::number(names.size()),
           names.size() == 1 ? QStringLiteral("column") : QStringLiteral("columns"),
           names.join(QStringLiteral(", ")));
}

inline QString pinIsNoOutput(const QString& action, int pins) {
  return QStringLiteral("'%1' has %2 output pins, which count from 0.")
      .arg(action, QString::number(pins));
}

inline QString previewHasNoRows(const QString& action) {
  return QStringLiteral(
             "'%1' has no output pin, so there are no rows to see. Name the action before it.")
      .arg(action);
}

}  // namespace kelvarin::program_messages

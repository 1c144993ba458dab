// The texts of the engine that a user reads.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::engine_messages {

// Running

inline QString exceptionOutOfAction(const QString& action, const QString& what) {
  return QStringLiteral("Internal error in action '%1': %2. The run is stopped.").arg(action, what);
}

inline QString outOfMemory(const QString& action) {
  return QStringLiteral(
             "Not enough memory in action '%1'. The run is stopped. Free some memory, or work on "
             "fewer columns or smaller values at a time.")
      .arg(action);
}

inline QString diskFull(const QString& file, int missingBytes) {
  return QStringLiteral(
             "The disk is full: %2 more bytes are needed for the file '%1'. Free some space "
             "on its disk.")
      .arg(file, QString::number(missingBytes));
}

inline QString severalRowsInOneCall(const QString& action) {
  return QStringLiteral(
             "Internal error in action '%1': it gave several rows in one step. The run is stopped.")
      .arg(action);
}

inline QString rowsLetGo(const QString& consumer, const QString& producer) {
  return QStringLiteral(
             "Internal error in action '%1': it asked for rows of '%2' that it had not asked for "
             "by its first "
             "own row and that were let go. The run is stopped.")
      .arg(consumer, producer);
}

inline QString graphWithoutActions(const QString& file) {
  return QStringLiteral(
             "%1: the graph has no actions, so there is nothing to run. Put actions inside "
             "<Actions>.")
      .arg(file);
}

inline QString graphTooDeep(const QString& file, int depth, int deepest) {
  return QStringLiteral(
             "%1: %2 actions follow one another along the links; at most %3 can. Join some of "
             "them: one Calculator has any number of outputs.")
      .arg(file)
      .arg(depth)
      .arg(deepest);
}

inline QString noStack(int depth) {
  return QStringLiteral(
             "There is not enough memory to run %1 actions that follow one another along the "
             "links.")
      .arg(depth);
}

inline QString firstPinNotLinked(const QString& action) {
  return QStringLiteral("Nothing is linked to input pin 0 of '%1': it gets no rows.").arg(action);
}

inline QString cannotMakeTemporaryFile(const QString& folder, const QString& reason) {
  return QStringLiteral(
             "Cannot make a temporary file in %1: %2. Rows that wait for their reader need one; "
             "set TMPDIR "
             "to a folder that can be written.")
      .arg(folder, reason);
}

inline QString cannotWriteTemporaryFile(const QString& folder, const QString& reason) {
  return QStringLiteral(
             "Cannot write a temporary file in %1: %2. Rows that wait for their reader need the "
             "space; set "
             "TMPDIR to a folder with more.")
      .arg(folder, reason);
}

inline QString cannotReadTemporaryFile(const QString& folder, const QString& reason) {
  return QStringLiteral("Cannot read a temporary file in %1 back: %2.").arg(folder, reason);
}

// Plug-ins

inline QString pluginNotFound(const QString& file) {
  return QStringLiteral(
             "There is no plug-in file %1. Give its place with --plugin or in the environment "
             "variable "
             "KELVARIN_PLUGIN.")
      .arg(file);
}

inline QString notAPlugin(const QString& file) {
  return QStringLiteral("%1 is not a plug-in: it has no plug-in description.").arg(file);
}

inline QString pluginOfAnotherInterface(const QString& file, const QString& given,
                                        const QString& wanted) {
  return QStringLiteral("%1 is a plug-in of another interface: it offers \"%2\", needed is \"%3\".")
      .arg(file, given, wanted);
}

inline QString pluginNotLoaded(const QString& file, const QString& reason) {
  return QStringLiteral("The plug-in %1 cannot be loaded: %2").arg(file, reason);
}

inline QString pluginWithoutVerification(const QString& file) {
  return QStringLiteral("The plug-in %1 has no verification text.").arg(file);
}

inline QString pluginOfAnotherBuild(const QString& file, const QString& given,
                                    const QString& wanted) {
  return QStringLiteral(
             "The plug-in %1 was made for another build: its verification text is \"%2\", needed "
             "is \"%3\".")
      .arg(file, QString(given).replace(u'\n', u' '), QString(wanted).replace(u'\n', u' '));
}

// Graph files

inline QString cannotReadGraph(const QString& reason) {
  return QStringLiteral("the graph cannot be read: %1.").arg(reason);
}

inline QString cannotSaveGraph(const QString& file, const QString& reason) {
  return QStringLiteral("The graph cannot be saved as %1: %2.").arg(file, reason);
}

inline QString notAGraph(const QString& root) {
  return QStringLiteral("this is no graph: the outermost element is <%1>, not <KelvarinGraph>.")
      .arg(root);
}

inline QString unknownGraphVersion(const QString& version) {
  return QStringLiteral("the graph has version '%1'; this program reads version 1.0.").arg(version);
}

inline QString unknownElement(const QString& element, const QString& parent,
                              const QStringList& known) {
  return QStringLiteral("<%1> is not known inside <%2>; known: %3.")
      .arg(element, parent,
           known.isEmpty() ? QStringLiteral("nothing") : known.join(QStringLiteral(", ")));
}

inline QString elementTwice(const QString& element) {
  return QStringLiteral("<%1> stands here a second time; a graph has one.").arg(element);
}

inline QString unknownAttribute(const QString& attribute, const QString& element,
                                const QStringList& known) {
  return QStringLiteral("the attribute '%1' is not known in <%2>; known: %3.")
      .arg(attribute, element,
           known.isEmpty() ? QStringLiteral("none") : known.join(QStringLiteral(", ")));
}

inline QString missingAttribute(const QString& attribute, const QString& element) {
  return QStringLiteral("<%2> needs the attribute '%1'.").arg(attribute, element);
}

inline QString strayText(const QString& element) {
  return QStringLiteral("there is text inside <%1>, where only elements are expected.")
      .arg(element);
}

inline QString parameterTwice(const QString& name) {
  return QStringLiteral("the parameter '%1' is declared twice.").arg(name);
}

inline QString unknownParameter(const QString& name, const QStringList& known) {
  return known.isEmpty()
             ? QStringLiteral("there is no parameter '%1': the graph declares none here.").arg(name)
             : QStringLiteral("there is no parameter '%1'; the parameters are: %2.")
                   .arg(name, known.join(QStringLiteral(", ")));
}

inline QString parameterOfItself(const QString& name) {
  return QStringLiteral(
             "the value of the parameter '%1' names the parameter itself; give it a value, or name "
             "parameters that stand before it.")
      .arg(name);
}

inline QString parameterTooLong(const QString& name, long long limit) {
  return QStringLiteral(
             "the value of the parameter '%1' becomes longer than %2 characters when the "
             "parameters in it are replaced; shorten it, or name fewer parameters in it.")
      .arg(name)
      .arg(limit);
}

inline QString parametersTooLong(const QString& name, long long limit) {
  return QStringLiteral(
             "with the parameter '%1' the values of all parameters grow by more than %2 characters "
             "when the parameters in them are replaced; shorten them.")
      .arg(name)
      .arg(limit);
}

inline QString attributeTooLong(const QString& attribute, const QString& element, long long limit) {
  return QStringLiteral(
             "the attribute '%1' of <%2> becomes longer than %3 characters when the parameters in "
             "it are replaced; shorten it, or name fewer parameters in it.")
      .arg(attribute, element)
      .arg(limit);
}

inline QString unknownOverride(const QString& name, const QStringList& known) {
  return known.isEmpty()
             ? QStringLiteral("the parameter '%1' cannot be set: the graph declares no parameters.")
                   .arg(name)
             : QStringLiteral(
                   "the parameter '%1' cannot be set: the graph does not declare it; it declares: "
                   "%2.")
                   .arg(name, known.join(QStringLiteral(", ")));
}

inline QString missingActionType(const QString& type) {
  return QStringLiteral(
             "Nobody offers actions of the type '%1'. Load the plug-in that has it, or put another "
             "action in its place.")
      .arg(type);
}

inline QString unknownAction(const QString& typeName, const QStringList& nearest,
                             const QStringList& all) {
  return nearest.isEmpty() ? QStringLiteral("there is no action <%1>; the actions are: %2.")
                                 .arg(typeName, all.join(QStringLiteral(", ")))
                           : QStringLiteral("there is no action <%1>; did you mean %2?")
                                 .arg(typeName, nearest.join(QStringLiteral(" or ")));
}

inline QString actionTwice(const QString& name, long long firstLine) {
  return QStringLiteral("the action name '%1' is taken by the action in line %2.")
      .arg(name)
      .arg(firstLine);
}

inline QString emptyActionName() {
  return QStringLiteral("the action's name is empty; links refer to actions by their names.");
}

inline QString absentAction(const QString& name, const QStringList& nearest) {
  return nearest.isEmpty() ? QStringLiteral("there is no action named '%1'.").arg(name)
                           : QStringLiteral("there is no action named '%1'; did you mean '%2'?")
                                 .arg(name, nearest.join(QStringLiteral("' or '")));
}

inline QString pinNotANumber(const QString& attribute, const QString& value) {
  return QStringLiteral("%1='%2' is not a pin number; pins are counted from 0.")
      .arg(attribute, value);
}

inline QString notANumber(const QString& attribute, const QString& value, const QString& element) {
  return QStringLiteral("%1='%2' in <%3> is not a number.").arg(attribute, value, element);
}

inline QString notAColour(const QString& value) {
  return QStringLiteral(
             "color='%1' is not a colour; write it as red, green and blue in hexadecimal digits, "
             "such as #FFF4C2.")
      .arg(value);
}

inline QString linkToAbsentPin(const QString& action, bool isInput, int pin, int count) {
  const QString kind = isInput ? QStringLiteral("input") : QStringLiteral("output");
  if (count == 0) {
    return QStringLiteral("'%1' has no %2 pins.").arg(action, kind);
  }
  return QStringLiteral("'%1' has no %2 pin %3; it has %4, counted from 0.")
      .arg(action, kind)
      .arg(pin)
      .arg(count);
}

inline QString pinLinkedTwice(const QString& action, int pin) {
  return QStringLiteral("input pin %2 of '%1' is linked already; an input pin takes one link.")
      .arg(action)
      .arg(pin);
}

inline QString cycle(const QStringList& names) {
  return QStringLiteral("the links form a cycle: %1.").arg(names.join(QStringLiteral(" -> ")));
}

}  // namespace kelvarin::engine_messages

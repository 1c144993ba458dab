// The texts that the contract's own operations show or log.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::messages {

inline QString helpPage(const QString& helpId) {
  return QStringLiteral("The help of this action is the page \"%1\".").arg(helpId);
}

inline QString noColumnPicked() {
  return QStringLiteral("No column was picked: there is no screen to ask on.");
}
inline QString cannotRunBranch(const QString& action) {
  return QStringLiteral("The action \"%1\" was not run: this program cannot run a part of a graph.")
      .arg(action);
}
inline QString branchFailed(const QString& reason) {
  return QStringLiteral("The part of the graph was not run to its end: %1.").arg(reason);
}
inline QString beginningOfList(const QString& beginning, long long count) {
  return QStringLiteral("%1, ... (%2 in all)").arg(beginning, QString::number(count));
}
inline QString nameCollision(const QString& action, const QString& column, int index) {
  return QStringLiteral(
             "The action \"%1\" cannot create the column \"%2\": its input has a column of that "
             "name "
             "already (number %3). Choose another name.")
      .arg(action, column, QString::number(index + 1));
}

// Two actions and their files, which may be one file under two names.
inline QString sameFiles(const QString& one, const QString& other) {
  return one == other ? QStringLiteral("'%1'").arg(one)
                      : QStringLiteral(
                            "'%1' and '%2' (one file, or one is a side file of the other, "
                            "or both have the same side files)")
                            .arg(one, other);
}
inline QString writtenTwice(const QString& first, const QString& firstFile, const QString& second,
                            const QString& secondFile) {
  return QStringLiteral("The actions '%1' and '%2' write the same file: %3. Give each its own.")
      .arg(first, second, sameFiles(firstFile, secondFile));
}
inline QString standardOutputTwice(const QString& first, const QString& second) {
  return QStringLiteral(
             "The actions '%1' and '%2' both write to standard output, which would mix their rows. "
             "Give one of them a file.")
      .arg(first, second);
}
inline QString standardInputTwice(const QString& first, const QString& second) {
  return QStringLiteral(
             "The actions '%1' and '%2' both read standard input, of which each row comes once. "
             "Give one of them a file, or link both to one reader.")
      .arg(first, second);
}
inline QString replacesSource(const QString& writer, const QString& written, const QString& reader,
                              const QString& read) {
  return QStringLiteral(
             "The action '%1' would replace what the action '%2' of this graph reads: %3. Write to "
             "another file.")
      .arg(writer, reader, sameFiles(written, read));
}

// The same between two graphs that run at one time; `graph` may be empty.
inline QString ofOtherGraph(const QString& action, const QString& graph) {
  return graph.isEmpty() ? QStringLiteral("the action '%1' of another graph").arg(action)
                         : QStringLiteral("the action '%1' of the graph '%2'").arg(action, graph);
}
inline QString writtenByOtherGraph(const QString& action, const QString& file, const QString& other,
                                   const QString& otherFile, const QString& otherGraph) {
  return QStringLiteral(
             "The action '%1' cannot write its file: %2 is being written by %3, which runs at the "
             "same time. Wait for its end, or write to another file.")
      .arg(action, sameFiles(file, otherFile), ofOtherGraph(other, otherGraph));
}
inline QString standardOutputOfOtherGraph(const QString& action, const QString& other,
                                          const QString& otherGraph) {
  return QStringLiteral(
             "The action '%1' cannot write to standard output: %2, which runs at the same time, "
             "writes there, and their rows would mix. Wait for its end, or write to a file.")
      .arg(action, ofOtherGraph(other, otherGraph));
}

inline QString noSuchColumn(const QString& name) {
  return QStringLiteral("The table has no column '%1'.").arg(name);
}
inline QString noColumnNamed() {
  return QStringLiteral("No column is named where one is needed.");
}
inline QString noColumns() {
  return QStringLiteral(" It has no columns at all.");
}
inline QString columnsMeant(const QStringList& near) {
  return QStringLiteral(" Did you mean '%1'?").arg(near.join(QStringLiteral("' or '")));
}
inline QString blanksAround(const QString& column) {
  return QStringLiteral(" The name of the column '%1' begins or ends with a blank.").arg(column);
}
inline QString allColumns(const QStringList& columns) {
  return QStringLiteral(" The table's columns: '%1'.").arg(columns.join(QStringLiteral("', '")));
}
inline QString columnCount(qsizetype count) {
  return QStringLiteral(" It has %1 columns; 'kelvarin check' lists them.").arg(count);
}

// What the element of an action holds

inline QString unknownElement(const QString& element, const QString& parent,
                              const QStringList& near, const QStringList& known) {
  const QString what = QStringLiteral("Unknown element <%1> inside <%2>.").arg(element, parent);
  if (known.isEmpty()) {
    return what + QStringLiteral(" No element may stand there.");
  }
  const QString all = QStringLiteral(" Known there: %1.").arg(known.join(QStringLiteral(", ")));
  return near.isEmpty() || near == known
             ? what + all
             : what + QStringLiteral(" Did you mean <%1>?").arg(near.join(u"> or <")) + all;
}
inline QString strayText(const QString& element, const QString& text) {
  constexpr qsizetype kLongest = 80;
  return QStringLiteral("The text '%1' stands inside <%2>, where no text has a meaning.")
      .arg(text.size() <= kLongest ? text : text.left(kLongest) + QStringLiteral("..."), element);
}

inline QString attributeIgnored(const QString& attribute, const QString& element,
                                const QStringList& near, const QStringList& known) {
  const QString advice =
      known.isEmpty()  ? QStringLiteral("The element has no attributes.")
      : near.isEmpty() ? QStringLiteral("Known: %1.").arg(known.join(QStringLiteral(", ")))
                       : QStringLiteral("Did you mean %1?").arg(near.join(QStringLiteral(" or ")));
  return QStringLiteral("the attribute '%1' is not known in <%2> and has no effect. %3")
      .arg(attribute, element, advice);
}
// `value` as the file has it, `expanded` with the graph's parameters in it.
inline QString oddValue(const QString& attribute, const QString& value, const QString& expanded,
                        const QString& element, const QString& wanted) {
  const QString shown = value == expanded ? QStringLiteral("'%1'").arg(value)
                                          : QStringLiteral("'%1' ('%2')").arg(value, expanded);
  return QStringLiteral("%1=%2 of <%3> is not %4.").arg(attribute, shown, element, wanted);
}

inline QString aFlag() {
  return QStringLiteral("0 or 1");
}
inline QString aWholeNumber() {
  return QStringLiteral("a whole number");
}
inline QString aNumber() {
  return QStringLiteral("a number");
}
inline QString aText() {
  return QStringLiteral("a text");
}
inline QString aSample() {
  return QStringLiteral("a number, or with isNumber='0' a text");
}
inline QString aNumberWithinLimits() {
  return QStringLiteral("a number below 2147483648");
}
inline QString firstLetterCounts() {
  return QStringLiteral("Its first letter counts.");
}

}  // namespace kelvarin::messages

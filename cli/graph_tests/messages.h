// The texts of `kelvarin test`.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::test_messages {

inline QString noTests(const QString& path) {
  return QStringLiteral(
             "'%1' has no tests. The tests of orders.kelvarin are the folders in orders.test "
             "beside it; 'kelvarin help tests' shows what they hold.")
      .arg(path);
}
inline QString noGraph(const QString& folder, const QString& graph) {
  return QStringLiteral("'%1' has tests for a graph that is not there: '%2'.").arg(folder, graph);
}
inline QString cannotMakeFolder(const QString& reason) {
  return QStringLiteral("No temporary folder can be made for a test: %1.").arg(reason);
}
inline QString cannotWriteReport(const QString& file, const QString& reason) {
  return QStringLiteral("The report '%1' cannot be written: %2.").arg(file, reason);
}
inline QString unknownElement(const QString& name) {
  return QStringLiteral(
             "Unknown element <%1>. A <Case> holds <Parameter name='' value=''/>, "
             "<Compare file='' tolerance='' anyOrder=''/>, <Says message=''/> and <Fails "
             "message=''/>.")
      .arg(name);
}
inline QString unknownAttribute(const QString& attribute, const QString& element,
                                const QString& known) {
  return QStringLiteral("Unknown attribute '%1'. A <%2> has: %3.").arg(attribute, element, known);
}
inline QString notASeed(const QString& text) {
  return QStringLiteral("The seed '%1' is no whole number of 0 to 4294967295.").arg(text);
}
inline QString notACase(const QString& name) {
  return QStringLiteral("<%1> is no <Case>.").arg(name);
}
inline QString notATolerance(const QString& text) {
  return QStringLiteral("The tolerance '%1' is no number of 0 or more.").arg(text);
}
inline QString writesOutside(const QString& action, const QString& file) {
  return QStringLiteral(
             "The action '%1' would write '%2', which a test must not do. Make the name relative, "
             "or give it by a parameter that the test sets.")
      .arg(action, file);
}

// Why a test did not pass.
inline QString runFailed(const QString& messages) {
  return QStringLiteral("the run failed:\n%1").arg(messages);
}
inline QString runDidNotFail() {
  return QStringLiteral("the run ended well, where it should fail");
}
inline QString runTookTooLong(int seconds) {
  return QStringLiteral("the run was stopped after %1 seconds (--timeout)")
      .arg(QString::number(seconds));
}
inline QString programNotStarted(const QString& reason) {
  return QStringLiteral("the program could not be started for the run: %1").arg(reason);
}
inline QString notSaid(const QString& expected, const QString& messages) {
  return QStringLiteral("no message of the run has the text '%1'; its messages were:\n%2")
      .arg(expected, messages.isEmpty() ? QStringLiteral("(none)") : messages);
}
inline QString fileNotWritten(const QString& file) {
  return QStringLiteral("%1: expected, but the run has not written it").arg(file);
}
inline QString inFile(const QString& file, const QString& difference) {
  return QStringLiteral("%1: %2").arg(file, difference);
}
inline QString columnMissing(const QString& column) {
  return QStringLiteral("the column '%1' is expected and missing").arg(column);
}
inline QString columnTooMany(const QString& column) {
  return QStringLiteral("the column '%1' is not expected").arg(column);
}
inline QString columnsInOtherOrder(const QString& expected, const QString& found) {
  return QStringLiteral("the columns come in another order: '%1' expected where '%2' is")
      .arg(expected, found);
}
inline QString rowMissing(long long row, const QString& values) {
  return QStringLiteral("row %1 is expected and missing: %2").arg(QString::number(row), values);
}
inline QString rowTooMany(long long row, const QString& values) {
  return QStringLiteral("row %1 is not expected: %2").arg(QString::number(row), values);
}
inline QString valueDiffers(long long row, const QString& column, const QString& expected,
                            const QString& found) {
  return QStringLiteral("row %1, column '%2': expected %3, found %4")
      .arg(QString::number(row), column, expected, found);
}
inline QString lineDiffers(long long line, const QString& expected, const QString& found) {
  return QStringLiteral("line %1: expected %2, found %3")
      .arg(QString::number(line), expected, found);
}
inline QString bytesDiffer(long long offset) {
  return QStringLiteral("the bytes differ from byte %1 on").arg(QString::number(offset));
}
inline QString cannotCompare(const QString& reason) {
  return QStringLiteral("cannot be compared: %1").arg(reason);
}
inline QString interrupted() {
  return QStringLiteral("interrupted");
}

// The report.
inline QString passed(const QString& name) {
  return QStringLiteral("ok    %1").arg(name);
}
inline QString failed(const QString& name, const QString& reason) {
  return QStringLiteral("FAIL  %1\n      %2").arg(name, reason);
}
inline QString summary(std::size_t tests, std::size_t failures) {
  return QStringLiteral("%1 tests, %2 failed").arg(tests).arg(failures);
}
inline QString updated(const QString& file) {
  return QStringLiteral("'%1' written").arg(file);
}

}  // namespace kelvarin::test_messages

// The texts that the contract's own operations show or log.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::messages {

inline QString documentTypeRefused() {
  return QStringLiteral(
      "The file has a document type (<!DOCTYPE ...>), which is not allowed here. Remove it.");
}
inline QString tooManyLevels(std::size_t maximum) {
  return QStringLiteral("The elements are nested more than %1 levels deep.").arg(maximum);
}
inline QString otherEncoding(const QString& encoding) {
  return QStringLiteral("The file says that its encoding is \"%1\". Save it as UTF-8.")
      .arg(encoding);
}
inline QString invalidEncoding(const QString& encoding) {
  return QStringLiteral("The file is not valid %1 text from here on. Save it as UTF-8.")
      .arg(encoding);
}
inline QString noElement() {
  return QStringLiteral("The file holds no XML element.");
}
inline QString notWellFormed(const QString& reason) {
  return QStringLiteral("The XML is not well formed: %1").arg(reason);
}
inline QString notWellFormedInside(const QString& reason, const QString& element, long long line) {
  return QStringLiteral("The XML is not well formed: %1 (inside <%2>, which opens at line %3)")
      .arg(reason, element, QString::number(line));
}
inline QString bareSign() {
  return QStringLiteral(
      ". In the text of an element, write & as &amp; and < as &lt;, or wrap the text: "
      "<![CDATA[a < 5 && b > 2]]>");
}
inline QString elementNotClosed(const QString& element, long long line) {
  return QStringLiteral("The file ends before <%1>, which opens at line %2, is closed.")
      .arg(element, QString::number(line));
}

inline QString helpPage(const QString& helpId) {
  return QStringLiteral("The help of this action is the page \"%1\".").arg(helpId);
}

inline QString noPictures() {
  return QStringLiteral("Icons are not drawn: this program runs without a screen.");
}
inline QString notDrawable(const QString& path) {
  return QStringLiteral("The picture \"%1\" is missing or is no SVG file.").arg(path);
}
inline QString noColumnPicked() {
  return QStringLiteral("No column was picked: there is no screen to ask on.");
}
inline QString noFilePicked() {
  return QStringLiteral("No file was picked: there is no screen to ask on.");
}
inline QString pickColumnTitle() {
  return QStringLiteral("Columns");
}
inline QString pickColumn() {
  return QStringLiteral("Column:");
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
                      : QStringLiteral("'%1' and '%2' (one file, or one is a side file of the other, "
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
inline QString replacesSource(const QString& writer, const QString& written, const QString& reader,
                              const QString& read) {
  return QStringLiteral(
             "The action '%1' would replace what the action '%2' of this graph reads: %3. Write to "
             "another file.")
      .arg(writer, reader, sameFiles(written, read));
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

inline QString fileIsFolder(const QString& file) {
  return QStringLiteral("\"%1\" cannot be written: it is a folder.").arg(file);
}
inline QString folderMissing(const QString& file, const QString& folder) {
  return QStringLiteral("\"%1\" cannot be written: there is no folder \"%2\". Create it first.")
      .arg(file, folder);
}
inline QString folderIsNone(const QString& file, const QString& folder) {
  return QStringLiteral("\"%1\" cannot be written: \"%2\" is no folder.").arg(file, folder);
}
inline QString folderNotWritable(const QString& file, const QString& folder) {
  return QStringLiteral("\"%1\" cannot be written: the folder \"%2\" may not be written to.")
      .arg(file, folder);
}

// About files that do not exist or hold something else.
inline QString filesMeant(const QStringList& near) {
  return QStringLiteral("Did you mean '%1'?").arg(near.join(QStringLiteral("' or '")));
}
inline QString filesThere(const QStringList& names) {
  return QStringLiteral("Its folder has, for instance, '%1'.")
      .arg(names.join(QStringLiteral("', '")));
}
inline QString noFolder(const QString& folder) {
  return QStringLiteral("There is no folder '%1'.").arg(folder);
}
inline QString noFolderButFile(const QString& path) {
  return QStringLiteral("'%1' is a file, not a folder.").arg(path);
}
inline QString looksLike(const QString& format, const QString& action) {
  return QStringLiteral("The file looks like %1; %2 reads those.").arg(format, action);
}
inline QString looksLikeGraph() {
  return QStringLiteral("The file looks like a graph file, which 'kelvarin run' runs.");
}
inline QString noGraphFile(const QString& format) {
  return QStringLiteral(
             "The file is no graph file; it looks like %1. A graph file begins with "
             "<KelvarinGraph version='1.0'> and names the tables to read and write.")
      .arg(format);
}
inline QString nameOfOtherFormat(const QString& file, const QString& written,
                                 const QString& extension, const QString& format) {
  return QStringLiteral(
             "The file '%1' is written as %2, but its extension .%3 is that of %4: programs that "
             "go by the name cannot read it.")
      .arg(file, written, extension, format);
}

inline QString notARegularFile(const QString& path) {
  return QStringLiteral("\"%1\" is no file that can be read: it is a folder or a device.")
      .arg(path);
}
inline QString fileError(const QString& path, const QString& reason) {
  return QStringLiteral("The file \"%1\" cannot be read: %2").arg(path, reason);
}
inline QString noSavedTable(const QString& path) {
  return QStringLiteral("The file \"%1\" is no saved table, or its head is damaged.").arg(path);
}
inline QString damagedTable(const QString& path, long long offset) {
  return QStringLiteral("The saved table \"%1\" is damaged or cut off at byte %2.")
      .arg(path, QString::number(offset));
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

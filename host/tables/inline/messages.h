// The texts about tables inside graph files that a user reads.
#pragma once

#include <QString>
#include <QStringList>

#include "host/xml/xml_node.h"

namespace kelvarin::inline_table_messages {

// "FILE:LINE:COLUMN: MESSAGE"; without the file where the graph has none.
inline QString withPosition(const QString& file, XMLNode::Position position,
                            const QString& message) {
  const QString inFile =
      QStringLiteral("%1:%2: %3").arg(position.line).arg(position.column).arg(message);
  return file.isEmpty() ? inFile : file + u':' + inFile;
}

inline QString noColumns() {
  return QStringLiteral(
      "the table has no columns; give it at least one <Column name='...' meta='...'/>.");
}

inline QString columnWithoutName() {
  return QStringLiteral("<Column> needs the attribute 'name'.");
}

inline QString columnTwice(const QString& name) {
  return QStringLiteral("the table has the column '%1' twice.").arg(name);
}

inline QString unknownMeta(const QString& column, const QString& meta) {
  return QStringLiteral("the column '%1' has meta='%2'; it is F (number), K (key) or U (text).")
      .arg(column, meta);
}

inline QString wrongNumberOfValues(qsizetype given, qsizetype wanted) {
  return QStringLiteral("the row has %1 values, and the table %2 columns.").arg(given).arg(wanted);
}

inline QString notANumber(const QString& column, const QString& text) {
  return QStringLiteral("'%2' is not a number, as the column '%1' wants.").arg(column, text);
}

inline QString notAKey(const QString& column, const QString& text) {
  return QStringLiteral(
             "'%2' is not a key, as the column '%1' wants: a key is a whole number from 0 to "
             "4294967293.")
      .arg(column, text);
}

}  // namespace kelvarin::inline_table_messages

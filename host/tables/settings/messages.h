// What may be wrong with the settings of table files.
#pragma once

#include <QString>

namespace kelvarin::table_messages {

inline QString badOnBadValue(const QString& text) {
  return QStringLiteral("onBadValue is '%1'. It takes 'abort' or 'null'.").arg(text);
}

inline QString badColumnMeta(const QString& column, const QString& meta) {
  return QStringLiteral(
             "The column '%1' is declared with the type '%2'. Types are F (number), K (key) and U "
             "(text).")
      .arg(column, meta);
}

inline QString columnWithoutName() {
  return QStringLiteral("<Column> needs the attribute 'name'.");
}

inline QString andMore(qsizetype count) {
  return QStringLiteral("... (%1 more)").arg(count);
}

inline QString chosenTwice(const QString& column) {
  return QStringLiteral("The column '%1' stands twice among the columns to read.").arg(column);
}

// `known` are shown where no name is near.
inline QString chosenColumnAbsent(const QString& source, const QString& column,
                                  const QStringList& nearest, const QString& known) {
  const QString text =
      QStringLiteral("The %1 has no column '%2', which is to be read.").arg(source, column);
  return nearest.isEmpty()
             ? text + QStringLiteral(" Its columns are: %1.").arg(known)
             : text + QStringLiteral(" Did you mean %1?").arg(nearest.join(QStringLiteral(" or ")));
}

inline QString declaredTwice(const QString& column) {
  return QStringLiteral("The column '%1' is declared twice.").arg(column);
}

}  // namespace kelvarin::table_messages

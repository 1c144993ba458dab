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

inline QString declaredTwice(const QString& column) {
  return QStringLiteral("The column '%1' is declared twice.").arg(column);
}

}  // namespace kelvarin::table_messages

// A text with the graph's parameters in it replaced: every `${name}` by the parameter's value.
//
// A few short values that name one another can stand for more than any memory holds, so a text
// grows up to a limit only. Used by: GlobalParameters; the reader of graph files, which refuses
// what is too long.
// Threads: any.
#pragma once

#include <QMap>
#include <QString>

#include "base/export.h"

namespace kelvarin {

class KELVARIN_CORE ParameterExpansion {
 public:
  static constexpr qsizetype kLongestText = 1 << 20;  // in characters

  ParameterExpansion(const QString& text, const QMap<QString, QString>& values);

  // Unknown names stay as they are, and so does all from the first known one on with which the text
  // would become too long.
  const QString& text() const { return m_text; }
  // The first one, null when all are known.
  const QString& unknownName() const { return m_unknownName; }
  bool isTooLong() const { return m_isTooLong; }

 private:
  QString m_text;
  QString m_unknownName;
  bool m_isTooLong = false;
};

// Of attributes in which `${` is nothing but text: formulas and notes.
KELVARIN_CORE bool isFreeText(const QString& attributeName);

}  // namespace kelvarin

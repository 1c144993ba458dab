// What the value of an expression depends on beside its variables: random numbers, the run, files.
//
// The tables of functions and constants say which names do.
// Threads: any.
#pragma once

#include <QSet>
#include <QString>

#include "ui/language/formula.h"

namespace kelvarin {

// All names of the expression, those of functions included.
QSet<QString> namesIn(const QString& expression);
inline QString rowNumberName() {
  return QStringLiteral("_n");
}
// Of the formula's variables, the row number among them where it is offered.
QSet<QString> variableNamesOf(const Formula& formula);

class OutsideSources {
 public:
  // A variable hides a constant of its name.
  OutsideSources(const QString& expression, const QSet<QString>& variables);

  bool readsFile() const { return !m_fileFunction.isEmpty(); }
  const QString& fileFunction() const { return m_fileFunction; }
  // Evaluated again, the value may be another one.
  bool any() const { return m_isRandom || m_differsByRun || readsFile(); }

 private:
  bool m_isRandom = false;
  bool m_differsByRun = false;
  QString m_fileFunction;
};

}  // namespace kelvarin

// The names in backquotes of the expressions on a command line, and the labels that stand for them
// while they are compiled and computed.
//
// A label has the size of what it stands for, with blanks behind it, so that a position in the one
// text is that in the other.
// Threads: one at a time.
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/errors/expression_error.h"

namespace kelvarin {

class ColumnLabels {
 public:
  // `taken` are names that are no label.
  explicit ColumnLabels(QSet<QString> taken) : m_taken(std::move(taken)) {}

  // The error is that of a name without an end.
  Result<QString, ExpressionError> labelled(const QString& typed);

  // The column that a name of a labelled expression means.
  QString columnOf(const QString& name) const { return m_columns.value(name, name); }
  bool isLabel(const QString& name) const { return m_columns.contains(name); }

  // A labelled expression without the blanks behind its labels, to be read.
  QString withoutPadding(const QString& labelled) const;

  // A text about labelled expressions as if it were about those that were typed. Lines with a
  // command to paste stay as they are.
  QString asTyped(const QString& text) const;

 private:
  QString labelOf(const QString& column);
  QString newLabel(const QString& column) const;

  QSet<QString> m_taken;
  QHash<QString, QString> m_labels;   // by column
  QHash<QString, QString> m_columns;  // by label
  struct Pair {
    QString labelled;
    QString typed;
  };
  QList<Pair> m_expressions;  // that have names in backquotes
};

}  // namespace kelvarin

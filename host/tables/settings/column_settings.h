// What a user says about the columns of a table file: `columns` chooses some of them, child
// elements `Column` with `name` and `meta` fix types, and `onBadValue` says what becomes of values
// that do not fit.
//
// A fault is reported while a graph is loaded, with its position in the file, and again from a
// reader that was made without a graph.
// Used by: ReadCSV, ReadParquet and ReadArrow.
// Errors: texts for the user.
#pragma once

#include <vector>

#include <QHash>
#include <QStringList>
#include <QVector>

#include "base/result.h"
#include "host/contract/attribute_table.h"
#include "host/contract/described_action.h"
#include "host/contract/meta_info.h"
#include "host/tables/settings/text_expansion.h"

namespace kelvarin {

// A column's type as the user declares it.
struct DeclaredColumn {
  QString name;
  MetaTypeColumn type;
};

// The settings with graph parameters replaced.
struct ColumnRules {
  bool areBadValuesNull = false;
  std::vector<DeclaredColumn> declared;
  QStringList chosen = {};  // in the order of the rows; empty: all
};

class ColumnSettings {
 public:
  ColumnSettings(const XMLNode& action, const GlobalParameters* parameters);

  static std::vector<AttributeDescription> describedAttributes();
  static ElementDescription describedElement();

  std::vector<ElementFault> faults(const XMLNode& action, const TextExpansion& expanded) const;
  Result<ColumnRules, QString> rules(const TextExpansion& expanded) const;

  // Writes the attributes that differ from their defaults.
  void saveAttributes(std::wostringstream& out) const;
  // Closes the element's start tag, writes the children, and the end tag of the action.
  void saveChildrenAndEnd(std::wostringstream& out, const char* action) const;

 private:
  struct Column {
    QString name;
    QString meta;
    XMLNode element;
  };

  QString m_chosen;
  QString m_onBadValue;
  std::vector<Column> m_columns;
};

// The index of each name; of several equal ones the first.
QHash<QString, qsizetype> positionsOf(const QVector<QString>& names);

// A list of names for a message, the first ones of many.
QString shownNames(const QVector<QString>& names);

// That a table with columns of these names has none of the chosen name.
QString chosenColumnAbsent(const QString& source, const QString& chosen,
                           const QVector<QString>& names);

}  // namespace kelvarin

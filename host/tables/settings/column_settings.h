// What a user says about the columns of a table file: child elements `Column` with `name` and
// `meta` fix types, and `onBadValue` says what becomes of values that do not fit.
//
// Used by: ReadCSV, ReadParquet and ReadArrow. Threads: plain values.  Errors: texts for the user.
#pragma once

#include <vector>

#include <QHash>
#include <QVector>

#include "base/result.h"
#include "host/contract/meta_info.h"
#include "host/tables/settings/attribute_texts.h"

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
};

// The elements that these settings allow inside an action.
extern const std::vector<KnownElements> kColumnElements;

class ColumnSettings {
 public:
  // Reports faults while a graph is loaded.
  explicit ColumnSettings(const XMLNode& action);

  Result<ColumnRules, QString> rules(const TextExpansion& expanded) const;

  // Writes the attribute where it differs from its default.
  void saveAttributes(std::wostringstream& out) const;
  // Closes the element's start tag, writes the children, and the end tag of the action.
  void saveChildrenAndEnd(std::wostringstream& out, const char* action) const;

 private:
  struct ColumnElement {
    QString name;
    QString meta;
  };

  QString m_onBadValue;
  std::vector<ColumnElement> m_columns;
};

// Where the names are; of several equal ones the first.
QHash<QString, qsizetype> positionsOf(const QVector<QString>& names);

// A list of names for a message, the first ones of many.
QString shownNames(const QVector<QString>& names);

}  // namespace kelvarin

// What a user says about the columns of a Parquet or Arrow file that is written: child elements
// `Column` with `name` and `type`, and `onBadValue` for the values that a type cannot hold.
//
// A fault is reported while a graph is loaded, with its position in the file, and again before a
// run.
// Used by: WriteParquet and WriteArrow.
// Errors: texts for the user.
#pragma once

#include <vector>

#include "base/result.h"
#include "host/contract/described_action.h"
#include "host/tables/arrow/stored_type.h"
#include "host/tables/settings/text_expansion.h"

namespace kelvarin {

class WrittenColumns {
 public:
  WrittenColumns(const XMLNode& action, const GlobalParameters* parameters);

  static AttributeDescription describedAttribute();
  static ElementDescription describedElement();

  std::vector<ElementFault> faults(const XMLNode& action, const TextExpansion& expanded) const;
  // For a table with these columns.
  Result<StoredColumns, QString> storedColumns(const OneRow& columns,
                                               const TextExpansion& expanded) const;
  void renameColumn(const QString& oldName, const QString& newName);

  // Writes the attribute where it differs from its default.
  void saveAttribute(std::wostringstream& out) const;
  // Closes the element's start tag, writes the children, and the end tag of the action.
  void saveChildrenAndEnd(std::wostringstream& out, const char* action) const;

 private:
  struct Column {
    QString name;
    QString type;
    XMLNode element;
  };

  QString m_onBadValue;
  std::vector<Column> m_columns;
};

}  // namespace kelvarin

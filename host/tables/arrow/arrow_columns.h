// The columns that a table in types of Arrow has for its reader: each is a number, a key or a text,
// by its type or as the user declares it. Columns of other types are an error, JSON text, or left
// out.
//
// Used by the readers of files and of streams.
// Errors: texts for the user, with the column.
#pragma once

#include <vector>

#include <QString>

#include "host/tables/files/batch_reader.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

struct ArrowField {
  QString name;
  QString type;                       // as Arrow calls it
  std::vector<MetaTypeColumn> types;  // that its values can be, the first by default; may be empty
};

// What becomes of columns whose type is not read.
enum class UnreadableColumns { error, text, skip };

struct ArrowRules {
  ColumnRules columns;
  UnreadableColumns unreadable = UnreadableColumns::error;
  bool isOfAttribute = false;  // so that the error says what else the attribute can be
};

// Those that are read, in the order of the rows.
struct ArrowColumns {
  TableColumns columns;
  std::vector<int> fields;    // of each column, which field of the table it is
  std::vector<bool> areJson;  // of each column, whether its texts are JSON
  QVector<QString> leftOut;   // fields whose type is not read
};

// `source` is what the table is called: "file 'a.parquet'".
Result<ArrowColumns, ReadFault> arrowColumnsOf(const QString& source,
                                               const std::vector<ArrowField>& fields,
                                               const ArrowRules& rules);

}  // namespace kelvarin

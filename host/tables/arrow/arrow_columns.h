// The columns that a table in types of Arrow has for its reader: each is a number, a key or a text,
// by its type or as the user declares it.
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

// `source` is what the table is called: "file 'a.parquet'".
Result<TableColumns, ReadFault> arrowColumnsOf(const QString& source,
                                               const std::vector<ArrowField>& fields,
                                               const std::vector<DeclaredColumn>& declared);

}  // namespace kelvarin

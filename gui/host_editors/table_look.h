// What a reading action would make of a file: its columns, first rows, and what its reader says.
//
// Used by: the editors of actions that read table files. The reader is the action's own.
// Threads: any; an editor looks on a thread beside its own.
#pragma once

#include <functional>
#include <memory>

#include <QDateTime>

#include "host/contract/shown_value.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

// A state of a file on the disk, to be compared.
struct FileState {
  qint64 size = -1;
  QDateTime modified;
  bool operator==(const FileState&) const = default;
};
FileState stateOfFile(const QString& path);

struct TableLook {
  struct Column {
    QString name;
    MetaTypeColumn type = MetaTypeColumn::text;   // as the action reads it
    MetaTypeColumn found = MetaTypeColumn::text;  // where nothing is declared
  };
  std::vector<Column> columns;
  std::vector<std::vector<ShownValue>> rows;
  FileState state;  // before it was looked into
  QStringList notes;
  QString fault;  // why a run would fail; empty where nothing is known against it
};

using MakeBatchReader =
    std::function<Result<std::unique_ptr<BatchReader>, QString>(const ColumnRules& rules)>;

// Where a value does not fit, the rows have null in its stead, and the fault says so.
TableLook lookIntoTable(const MakeBatchReader& makeReader, const ColumnRules& rules,
                        const std::function<bool()>& isStopped);

// Why the file cannot be looked into; empty where it can. Pipes and devices can be read only once,
// so that only a run reads them.
QString whyNotLookedInto(const QString& path);

}  // namespace kelvarin

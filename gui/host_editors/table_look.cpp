#include "gui/host_editors/table_look.h"

#include <algorithm>

#include <QCoreApplication>
#include <QFileInfo>

#include "host/files/file_hints.h"

namespace kelvarin {

namespace {

constexpr std::size_t kRows = 50;

void showRows(const RowBatch& batch, TableLook& look) {
  const std::size_t end = std::min(batch.rowCount(), kRows - look.rows.size());
  forEachRow(batch, 0, end, [&](std::size_t, std::size_t storedRow) {
    std::vector<ShownValue>& row = look.rows.emplace_back();
    for (const BatchColumn& column : batch.columns()) {
      row.push_back(shownBytes(column.type(), column.value(storedRow)));
    }
  });
}

// The first error ends it.
Status<QString> readRows(BatchReader& reader, TableLook& look,
                         const std::function<bool()>& isStopped) {
  while (look.rows.size() < kRows && !isStopped()) {
    const std::unique_ptr<TableUnit> unit = reader.readUnit();
    if (unit == nullptr) {
      break;
    }
    unit->parse();
    reader.accept(*unit);
    if (unit->batch() != nullptr) {
      showRows(*unit->batch(), look);
    }
    if (!unit->failure().isEmpty()) {
      return Failure{unit->failure()};
    }
  }
  return Done{};
}

TableLook lookOnce(const MakeBatchReader& makeReader, const ColumnRules& rules,
                   const std::function<bool()>& isStopped) {
  TableLook look;
  auto reader = makeReader(rules);
  if (!reader) {
    look.fault = reader.error();
    return look;
  }
  const auto columns = (*reader)->open(isStopped);
  look.notes = (*reader)->notes();
  if (!columns) {
    look.fault = columns.error();
    return look;
  }
  for (std::size_t i = 0; i < columns->types.size(); ++i) {
    const MetaTypeColumn type = columns->types[i];
    look.columns.push_back({columns->names[static_cast<qsizetype>(i)], type, type});
  }
  if (const auto status = readRows(**reader, look, isStopped); !status) {
    look.fault = status.error();
  }
  look.notes += (*reader)->warnings();
  return look;
}

}  // namespace

TableLook lookIntoTable(const MakeBatchReader& makeReader, const ColumnRules& rules,
                        const std::function<bool()>& isStopped) {
  TableLook look = lookOnce(makeReader, rules, isStopped);
  if (!look.fault.isEmpty() && !look.columns.empty() && !rules.areBadValuesNull) {
    ColumnRules tolerant = rules;
    tolerant.areBadValuesNull = true;
    look.rows = lookOnce(makeReader, tolerant, isStopped).rows;
  }
  if (rules.declared.empty() || isStopped()) {
    return look;
  }
  const TableLook undeclared =
      lookOnce(makeReader, {rules.areBadValuesNull, {}, rules.chosen}, isStopped);
  if (look.columns.empty()) {
    look.columns = undeclared.columns;
  }
  for (std::size_t i = 0; i < std::min(look.columns.size(), undeclared.columns.size()); ++i) {
    look.columns[i].found = undeclared.columns[i].found;
  }
  return look;
}

FileState stateOfFile(const QString& path) {
  const QFileInfo file(path);
  return file.isFile() ? FileState{file.size(), file.lastModified()} : FileState();
}

QString whyNotLookedInto(const QString& path) {
  if (path == QLatin1String("-")) {
    return QCoreApplication::translate("kelvarin::TableLook",
                                       "The rows come from standard input: only a run reads it.");
  }
  const QFileInfo file(path);
  if (!file.exists()) {
    const QString hint = missingFileHint(path);
    const QString text =
        QCoreApplication::translate("kelvarin::TableLook", "There is no file '%1'.").arg(path);
    return hint.isEmpty() ? text : text + u' ' + hint;
  }
  if (file.isDir()) {
    return QCoreApplication::translate("kelvarin::TableLook",
                                       "'%1' is a folder. Name a file in it.")
        .arg(path);
  }
  if (!file.isFile()) {
    return QCoreApplication::translate("kelvarin::TableLook",
                                       "'%1' is a pipe or a device: only a run reads it.")
        .arg(path);
  }
  if (!file.isReadable()) {
    return QCoreApplication::translate(
               "kelvarin::TableLook",
               "You may not read the file '%1'. Ask its owner for the permission.")
        .arg(path);
  }
  return {};
}

}  // namespace kelvarin

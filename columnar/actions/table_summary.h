// What is in a columnar file, as an editor shows it before anything is read.
//
// Only the main file's descriptors are read, and the lengths of the side files.
// Threads: any; the reading can take long, so editors do it beside their own.
// Errors: texts for the user; nothing logs.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include <QString>
#include <QVector>

#include "base/result.h"
#include "columnar/format/storage_code.h"
#include "host/contract/sort_infos.h"

namespace kelvarin {

struct TableSummary {
  struct Column {
    QString name;
    GelType type = GelType::text;
    int set = 0;
    std::uint64_t storedBytes = 0;  // as far as the blocks show them
  };

  QString file;
  std::vector<Column> columns;  // in the order of the rows
  QVector<SortInfos> order;     // of the rows; its columns are indices of `columns`
  std::uint64_t rows = 0;       // in the blocks that are described
  std::uint64_t blocks = 0;
  std::uint32_t rowsInBlock = 0;
  int columnSets = 0;
  bool isComplete = true;
  bool isBeingWritten = false;

  std::uint64_t lostRows = 0;  // whose descriptors are damaged
  bool isCut = false;          // the main file ends too early
  QString missingSideFile;     // the first one; the columns' sizes are unknown then

  bool isDamaged() const { return lostRows > 0 || isCut || !missingSideFile.isEmpty(); }
  std::uint64_t storedBytes() const;
};

// `isStopped` is asked from time to time; what was found until then is returned when it is true.
Result<TableSummary, QString> summaryOf(const QString& file,
                                        const std::function<bool()>& isStopped = {});

}  // namespace kelvarin

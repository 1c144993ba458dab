// The settings of writeColumnarGel, each an attribute of its element.
#pragma once

#include <utility>
#include <vector>

#include "host/contract/attribute_table.h"

namespace kelvarin {

struct WriteColumnarSettings {
  enum class Split { none, bySize, byValue };
  enum class ColumnSets { one, listed, oneForEachColumn };

  QString file = QStringLiteral("");
  QString splitColumn = QStringLiteral("");
  int threadCount = -1;  // below 1: the host's default
  int rowsInBlock = 5000;
  int columnStrategy = 0;  // see columnSets()
  bool createDirectory = false;
  bool checkNameCollision = true;  // against other files that the graph writes
  bool alwaysDelete = false;       // removes the old file even when the input table is empty
  CutNumber segmentSize{100};      // of one file when splitting by size, in MiB
  int split = 0;                   // see splitKind()
  bool advancedNaming = false;     // names of split files are expressions over `SplitVal`
  bool writeAllRows = true;        // otherwise only rows whose testColumn equals testValue
  QString testColumn = QStringLiteral("");
  QString testValue = QStringLiteral("");
  int deleteTimeOutSeconds = 1;  // how long to wait for a locked previous file
  bool replaceAtEnd = false;     // the previous file stays until the new one is whole

  bool operator==(const WriteColumnarSettings&) const = default;

  // Other numbers than 1 and 2 are those of a file in one piece.
  Split splitKind() const {
    return split == 1 ? Split::bySize : split == 2 ? Split::byValue : Split::none;
  }
  ColumnSets columnSets() const {
    return columnStrategy == 1   ? ColumnSets::listed
           : columnStrategy == 2 ? ColumnSets::oneForEachColumn
                                 : ColumnSets::one;
  }
};

// Which column set a column goes to, in the order of the graph file.
using ListedColumnSets = std::vector<std::pair<QString, int>>;

}  // namespace kelvarin

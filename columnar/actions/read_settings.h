// What a user sets for reading columnar files.
#pragma once

#include <QString>

namespace kelvarin {

struct ReadColumnarSettings {
  enum class Columns { all, listed, fromPin };

  QString fileName = QStringLiteral("");  // read when the names do not come from the input pin
  bool fileNameFromPin = false;
  bool abortIfMissing = true;  // a missing file is an error; otherwise it is skipped with a warning
  bool accurateProgressBar = true;  // progress counts rows; otherwise files
  bool readIncompleteFile = false;
  bool skipCorruptedBlocks = false;
  bool filterRows = false;  // applies the block filter
  int blocksAhead = 2;
  // 0 all columns, 1 those of `columnsToRead`, 2 those named by an input pin
  int columnSelection = 0;
  int timeOutSeconds = 0;      // how long to wait for a missing file
  bool readAllColumns = true;  // when not set, columnSelection is 1

  bool operator==(const ReadColumnarSettings&) const = default;

  Columns columns() const {
    switch (columnSelection) {
      case 1:
        return Columns::listed;
      case 2:
        return Columns::fromPin;
      default:
        return Columns::all;
    }
  }
};

}  // namespace kelvarin

// What is made of the values of a column in a type of Arrow, and what is noticed about them.
//
// Used by the readers of files and of streams.
// Threads: one at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <QString>
#include <QStringList>
#include <QVector>

#include "host/contract/row_batch.h"

namespace kelvarin {

// A value that its column's type cannot hold.
struct BadValue {
  std::int64_t row;  // among those that were converted together
  std::string text;
};

// The values as rows have them.
struct ConvertedArray {
  BatchColumn values;
  std::optional<BadValue> bad;  // the values from this one on are not there
};

// Rows of one kind: how many, and which is the first of the table.
struct RowCount {
  long long count = 0;
  long long firstRow = -1;

  void add(long long row) { firstRow = count++ == 0 ? row : firstRow; }
  // Rows that come after these.
  void add(const RowCount& later) {
    firstRow = count == 0 ? later.firstRow : firstRow;
    count += later.count;
  }
};

// What has been noticed in the values of a column.
struct ColumnTally {
  bool areBadValuesNull = false;
  long long rowsBefore = 0;  // those that are converted
  RowCount badValues;
  RowCount finerTimes;  // timestamps with digits below the millisecond

  // True when the value becomes missing.
  bool takesAsMissing(std::int64_t row) {
    if (areBadValuesNull) {
      badValues.add(rowsBefore + row);
    }
    return areBadValuesNull;
  }
  void add(const ColumnTally& later) {
    badValues.add(later.badValues);
    finerTimes.add(later.finerTimes);
  }
};

// What was tolerated in the columns of these names. `locationOfRow` says where a row stands.
QStringList warningsAbout(const std::vector<ColumnTally>& tallies, const QVector<QString>& names,
                          const std::function<QString(long long)>& locationOfRow);

}  // namespace kelvarin

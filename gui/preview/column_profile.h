// What the values of one column of a preview are like: how many are missing, how many differ, how
// they are spread.
//
// Threads: any; the values are plain.
#pragma once

#include <optional>
#include <vector>

#include <QString>

#include "gui/preview/background_queue.h"
#include "gui/preview/preview_rows.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

struct ColumnProfile {
  struct Bin {
    double first;  // the bin has values from here
    double end;    // to before here; the last one with it
    long long count;
  };
  struct Quantile {
    double share;  // 0 to 1
    double value;
  };
  struct Frequent {
    QString value;  // as cells show it
    long long count;
  };

  MetaTypeColumn type = MetaTypeColumn::text;
  long long rowCount = 0;
  long long nullCount = 0;
  long long notANumberCount = 0;
  long long emptyCount = 0;     // of empty texts
  long long distinctCount = 0;  // of values that are there
  bool isDistinctExact = true;
  bool hasRange = false;  // there are values that can be compared
  QString minimum;        // as cells show them
  QString maximum;
  double mean = 0.0;  // of finite numbers
  std::vector<Bin> bins;
  std::vector<Quantile> quantiles;  // of numbers, infinite ones included
  bool areQuantilesExact = true;
  long long shortestText = 0;  // in bytes
  long long longestText = 0;
  std::vector<Frequent> frequent;  // the most frequent one first

  bool isOfTexts() const { return fixedSizeOf(type) == 0; }
};

// Up to so many different values are counted one by one, beyond that they are estimated.
inline constexpr std::size_t kCountedValues = 100'000;
inline constexpr std::size_t kFrequentValues = 10;

// Of the first `rowCount` rows. Nothing when it was stopped or values cannot be read.
std::optional<ColumnProfile> profileOf(const PreviewRows& rows, int column, long long rowCount,
                                       const StopFlag& isStopped);

}  // namespace kelvarin

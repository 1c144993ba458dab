// Which rows a preview shows and in which order: filters on columns, and a column to sort by.
//
// Missing values come first ascending and last descending, NaN after all numbers, texts in the
// order of their UTF-8 bytes; equal values keep the order of the rows.
// Threads: any.
#pragma once

#include <optional>
#include <vector>

#include "gui/preview/background_queue.h"
#include "gui/preview/cell_filter.h"
#include "gui/preview/preview_rows.h"

namespace kelvarin {

struct RowOrder {
  struct Filter {
    int column = 0;
    CellFilter cells;
  };
  std::vector<Filter> filters;
  int sortColumn = -1;  // -1: as they came
  bool isDescending = false;

  bool isPlain() const { return filters.empty() && sortColumn < 0; }
};

// Of the first `rowCount` rows. Nothing when it was stopped or values cannot be read.
std::optional<RowNumbers> rowsInOrder(const PreviewRows& rows, long long rowCount,
                                      const RowOrder& order, const StopFlag& isStopped);

}  // namespace kelvarin

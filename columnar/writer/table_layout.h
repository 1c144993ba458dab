// How a table becomes a columnar file: which columns go to which set, how each is stored, and
// whether the table is within the limits of the format.
//
// Made by ColumnarHDWriter from the first row, before anything is allocated or written.
#pragma once

#include <optional>

#include <QHash>
#include <QString>

#include "base/result.h"
#include "columnar/format/block_descriptor.h"
#include "columnar/format/file_header.h"
#include "columnar/writer/write_failure.h"
#include "host/contract/one_row.h"

namespace kelvarin {

struct TableLayout {
  MetadataBlock metadata;
  DescriptorLayout descriptors;
  std::size_t descriptorsInRecord = 0;

  std::size_t descriptorBlockSize() const { return descriptorsInRecord * descriptors.width(); }
  // Header, slot table and metadata block.
  std::size_t headLength() const;
};

// `columnSets` maps names to set numbers; a column that it leaves out, or whose number is negative,
// is not written. Empty: all columns go to set 0. `memoryBudget` is in MiB.
Result<TableLayout, WriteFailure::Kind> layOutTable(const OneRow& row, int rowsInBlock,
                                                    const QHash<QString, int>& columnSets,
                                                    int memoryBudget);

}  // namespace kelvarin

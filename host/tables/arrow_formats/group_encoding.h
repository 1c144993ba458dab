// A row group whose columns are being encoded.
//
// Used by: RowGroupWriter.
// Threads: its own take column after column; the others as they are named.
#pragma once

#include <atomic>
#include <thread>

#include "host/tables/arrow_formats/row_group_writer.h"

namespace kelvarin {

class GroupEncoding {
 public:
  // Encodes at once with one thread, else on so many of its own. `format` outlives it.
  GroupEncoding(std::unique_ptr<RowGroup> group, const RowGroupFormat& format,
                std::size_t threadCount);
  // Columns that no thread has begun are left out.
  ~GroupEncoding();

  // Waits until all columns are encoded, and writes them.
  arrow::Status writeTo(RowGroupFormat& format);

 private:
  void encodeColumns();

  std::unique_ptr<RowGroup> m_group;
  const RowGroupFormat& m_format;
  std::vector<std::unique_ptr<EncodedColumn>> m_columns;
  std::vector<arrow::Status> m_outcomes;  // of each column
  std::atomic<std::size_t> m_nextColumn{0};
  std::vector<std::jthread> m_threads;
};

}  // namespace kelvarin

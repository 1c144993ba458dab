// The numbers and keys of some rows of a batch, printed column by column.
//
// Used by: CsvBatchFormat, some rows after the others.
#pragma once

#include <memory>
#include <vector>

#include "base/number_texts.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

class PrintedRows {
 public:
  explicit PrintedRows(const RowBatch& batch);

  // Prints the rows that follow. False: there are none.
  bool next();
  // Of the batch.
  std::size_t begin() const { return m_begin; }
  std::size_t end() const { return m_end; }
  std::size_t storedRow(std::size_t row) const { return m_storedRows[row - m_begin]; }
  // From the row begin() on; null for a column of texts.
  const NumberText* numbers(std::size_t column) const { return m_columns[column]; }

 private:
  void print(const BatchColumn& column, NumberText* texts);

  const RowBatch& m_batch;
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
  std::size_t m_rowsAtOnce = 0;
  std::vector<NumberText*> m_columns;
  std::unique_ptr<NumberText[]> m_texts;
  std::uint32_t m_storedRows[kNumbersPrinted];
};

}  // namespace kelvarin

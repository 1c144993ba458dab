// Consecutive rows of one pin, column by column: what sources fill, actions transform, links carry,
// sinks write and queues keep.
//
// A batch never changes once it is made. Its columns share their memory with other batches: an
// action passes a column on by copying a BatchColumn, and a filter passes all of them on with a
// selection of the stored rows. Single rows are a view of it (batch_rows.h).
// Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/export.h"
#include "host/contract/column_bytes.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

// The distinct texts of a column of which many rows are equal. There may be entries that no row
// has, and entries of the same text.
struct BatchDictionary {
  const std::uint16_t* codes = nullptr;      // of each stored row, the index of its entry
  std::span<const std::uint32_t> positions;  // of the entries, like those of the rows

  bool isThere() const { return codes != nullptr; }
};

class LateNumbers;
class LateTexts;

// The values of one column, in the bytes of column_bytes.h: numbers and keys one after another,
// texts at positions in a buffer. Values that few actions look at may be late, as texts are between
// a source and a filter (late_texts.h).
class BatchColumn {
 public:
  // `owner` keeps the values alive.
  static BatchColumn ofNumbers(std::shared_ptr<const void> owner, const double* numbers) {
    return {MetaTypeColumn::number, std::move(owner), numbers, nullptr, 0};
  }
  static BatchColumn ofKeys(std::shared_ptr<const void> owner, const std::uint32_t* keys) {
    return {MetaTypeColumn::key, std::move(owner), keys, nullptr, 0};
  }
  // The text of stored row i begins at bytes + positions[i]. `size` is that of the buffer in bytes,
  // and decides how much memory the column counts for. `type` is neither number nor key.
  static BatchColumn ofTexts(MetaTypeColumn type, std::shared_ptr<const void> owner,
                             const unsigned char* bytes, const std::uint32_t* positions,
                             std::size_t size) {
    return {type, std::move(owner), bytes, positions, size};
  }

  // Texts that are not made yet, from this one on. `size` is as above. Such a column has no values
  // but these.
  static BatchColumn ofLateTexts(MetaTypeColumn type, std::shared_ptr<const LateTexts> texts,
                                 std::size_t first, std::size_t size) {
    const LateTexts* late = texts.get();
    BatchColumn column(type, std::move(texts), nullptr, nullptr, size);
    column.m_lateTexts = late;
    column.m_firstLate = first;
    return column;
  }

  // The same of numbers.
  static BatchColumn ofLateNumbers(std::shared_ptr<const LateNumbers> numbers, std::size_t first) {
    const LateNumbers* late = numbers.get();
    BatchColumn column(MetaTypeColumn::number, std::move(numbers), nullptr, nullptr, 0);
    column.m_lateNumbers = late;
    column.m_firstLate = first;
    return column;
  }

  MetaTypeColumn type() const { return m_type; }
  bool isLate() const { return m_lateTexts != nullptr || m_lateNumbers != nullptr; }
  const LateTexts* lateTexts() const { return m_lateTexts; }
  const LateNumbers* lateNumbers() const { return m_lateNumbers; }
  // Of the first stored row, among the late values.
  std::size_t firstLate() const { return m_firstLate; }
  // It is known that no value is missing.
  bool isComplete() const { return m_isComplete; }
  void setComplete() { m_isComplete = true; }
  const double* numbers() const { return reinterpret_cast<const double*>(m_values); }
  const std::uint32_t* keys() const { return reinterpret_cast<const std::uint32_t*>(m_values); }
  const unsigned char* textBytes() const { return m_values; }
  const std::uint32_t* textPositions() const { return m_positions; }
  const unsigned char* text(std::size_t storedRow) const {
    return m_values + m_positions[storedRow];
  }
  // Of any type.
  const unsigned char* value(std::size_t storedRow) const {
    return m_positions != nullptr ? text(storedRow) : m_values + storedRow * fixedSizeOf(m_type);
  }
  const std::shared_ptr<const void>& owner() const { return m_owner; }
  std::size_t textSize() const { return m_textSize; }
  // Of texts, where it is known: what depends on the text alone need be computed for entries only.
  const BatchDictionary& dictionary() const { return m_dictionary; }
  // The owner keeps it alive, too.
  void setDictionary(const BatchDictionary& dictionary) { m_dictionary = dictionary; }
  // The same column without its first rows.
  BatchColumn from(std::size_t storedRow) const {
    BatchColumn rest = *this;
    if (isLate()) {
      rest.m_firstLate += storedRow;
    } else if (m_positions != nullptr) {
      rest.m_positions += storedRow;
      rest.m_dictionary.codes += m_dictionary.isThere() ? storedRow : 0;
    } else {
      rest.m_values += storedRow * fixedSizeOf(m_type);
    }
    return rest;
  }

 private:
  BatchColumn(MetaTypeColumn type, std::shared_ptr<const void> owner, const void* values,
              const std::uint32_t* positions, std::size_t textSize)
      : m_type(type),
        m_values(static_cast<const unsigned char*>(values)),
        m_positions(positions),
        m_textSize(textSize),
        m_owner(std::move(owner)) {}

  MetaTypeColumn m_type;
  bool m_isComplete = false;
  const unsigned char* m_values;
  const std::uint32_t* m_positions;  // null for numbers and keys
  std::size_t m_textSize;
  BatchDictionary m_dictionary;
  const LateTexts* m_lateTexts = nullptr;
  const LateNumbers* m_lateNumbers = nullptr;
  std::size_t m_firstLate = 0;
  std::shared_ptr<const void> m_owner;
};

class RowBatch;
using RowBatchPointer = std::shared_ptr<const RowBatch>;

// Indices of stored rows, ascending.
using RowSelection = std::shared_ptr<const std::uint32_t[]>;

class KELVARIN_CORE RowBatch {
 public:
  // All columns have `storedRows` values.
  RowBatch(std::size_t storedRows, std::vector<BatchColumn> columns);
  // Of these rows, the `rowCount` that are selected.
  RowBatch(std::size_t storedRows, std::vector<BatchColumn> columns, RowSelection selection,
           std::size_t rowCount);

  std::size_t rowCount() const { return m_rowCount; }
  std::size_t storedRows() const { return m_storedRows; }
  std::size_t columnCount() const { return m_columns.size(); }
  const std::vector<BatchColumn>& columns() const { return m_columns; }
  const BatchColumn& column(std::size_t index) const { return m_columns[index]; }

  // Null where all stored rows count.
  const std::uint32_t* selection() const { return m_selection.get(); }
  const RowSelection& sharedSelection() const { return m_selection; }
  std::size_t storedRow(std::size_t row) const {
    return m_selection == nullptr ? row : m_selection[row];
  }

  // Rows from `begin` to before `end`; nothing is copied.
  RowBatchPointer slice(std::size_t begin, std::size_t end) const;
  // The same without the stored rows before and behind; a selection is copied.
  RowBatchPointer narrowSlice(std::size_t begin, std::size_t end) const;
  // About as much memory as its columns take, those that it shares included.
  std::size_t byteCount() const;

 private:
  std::size_t m_storedRows;
  std::vector<BatchColumn> m_columns;
  RowSelection m_selection;
  std::size_t m_rowCount;
};

// Calls `visit(rank, storedRow)` for every row, with its number in the batch and where it is
// stored.
template <typename Visit>
void forEachRow(const RowBatch& batch, std::size_t begin, std::size_t end, Visit visit) {
  if (const std::uint32_t* selection = batch.selection()) {
    for (std::size_t row = begin; row < end; ++row) {
      visit(row, static_cast<std::size_t>(selection[row]));
    }
    return;
  }
  for (std::size_t row = begin; row < end; ++row) {
    visit(row, row);
  }
}

}  // namespace kelvarin

#include "library/arrow_streams/exported_batch.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <utility>

#include "host/contract/late_texts.h"
#include "library/arrow_streams/exported_texts.h"
#include "library/arrow_streams/untouched_numbers.h"
#include "library/arrow_streams/value_search.h"

namespace kelvarin {

namespace {

// The last one sets `release` to null.
void releaseChildren(ArrowArray& array) {
  for (std::int64_t i = 0; i < array.n_children; ++i) {
    if (array.children[i]->release != nullptr) {
      array.children[i]->release(array.children[i]);
    }
  }
}

void releaseColumn(ArrowArray* array) {
  delete static_cast<ExportedColumn*>(array->private_data);
  array->release = nullptr;
}

ArrowArray arrayOf(std::unique_ptr<ExportedColumn> column, std::size_t rows) {
  ArrowArray array{};
  array.length = static_cast<std::int64_t>(rows);
  array.null_count = column->nullCount;
  array.n_buffers = static_cast<std::int64_t>(column->buffers.size());
  array.buffers = column->buffers.data();
  array.release = &releaseColumn;
  array.private_data = column.release();
  return array;
}

struct Table {
  std::vector<ArrowArray> columns;
  std::vector<ArrowArray*> pointers;
  const void* buffers[1] = {nullptr};
};

void releaseTable(ArrowArray* array) {
  releaseChildren(*array);
  delete static_cast<Table*>(array->private_data);
  array->release = nullptr;
}

bool mayHaveNull(const double* numbers, std::size_t count) {
  return hasNaN(numbers, count);
}

bool mayHaveNull(const std::uint32_t* keys, std::size_t count) {
  return hasNullKey(keys, count);
}

bool isNull(double number) {
  return isNullNumber(number);
}

bool isNull(std::uint32_t key) {
  return isNullKey(key);
}

template <typename Value>
void addNulls(const Value* rows, std::size_t count, ExportedColumn& made) {
  constexpr std::size_t kRowsAtOnce = 256;
  for (std::size_t begin = 0; begin < count; begin += kRowsAtOnce) {
    const std::size_t end = std::min(begin + kRowsAtOnce, count);
    if (!mayHaveNull(rows + begin, end - begin)) {
      continue;
    }
    for (std::size_t row = begin; row < end; ++row) {
      if (isNull(rows[row])) {
        made.addNull(row);
      }
    }
  }
}

template <typename Value>
std::unique_ptr<ExportedColumn> exportedValues(const RowBatch& batch, std::size_t index,
                                               const BatchColumn& column, const Value* values,
                                               bool isCopied, ArrayMemory& memory) {
  auto made = std::make_unique<ExportedColumn>(batch.rowCount());
  const Value* rows = values;
  if (const std::uint32_t* selection = batch.selection()) {
    auto gathered = memory.allocate<Value>(index, batch.rowCount());
    for (std::size_t row = 0; row < batch.rowCount(); ++row) {
      gathered[row] = values[selection[row]];
    }
    rows = gathered.get();
    made->owner = std::move(gathered);
  } else if (isCopied) {
    auto kept = memory.keep(index, column.owner(), values, batch.rowCount());
    rows = kept.get();
    made->owner = std::move(kept);
  } else {
    made->owner = column.owner();
  }
  if (!column.isComplete()) {
    addNulls(rows, batch.rowCount(), *made);
  }
  made->buffers = {made->validity(), rows};
  return made;
}

std::unique_ptr<ExportedColumn> exportedColumn(const RowBatch& batch, std::size_t index,
                                               const BatchForm& form, ArrayMemory& memory) {
  const BatchColumn& given = batch.column(index);
  const auto* untouched = dynamic_cast<const UntouchedNumbers*>(given.lateNumbers());
  if (untouched != nullptr && batch.selection() == nullptr) {
    return untouched->exported(given.firstLate(), batch.rowCount());
  }
  const BatchColumn column =
      columnWithTexts(given, batch.storedRows(), batch.selection(), batch.rowCount());
  const bool isCopied = index < form.copied.size() && form.copied[index];
  switch (column.type()) {
    case MetaTypeColumn::number:
      return exportedValues(batch, index, column, column.numbers(), isCopied, memory);
    case MetaTypeColumn::key:
      return exportedValues(batch, index, column, column.keys(), isCopied, memory);
    default:
      return exportedTexts(batch, index, form.texts, memory);
  }
}

OwnedArray exportedRows(const RowBatch& batch, const BatchForm& form, ArrayMemory& memory) {
  auto table = std::make_unique<Table>();
  table->columns.reserve(batch.columnCount());
  table->pointers.reserve(batch.columnCount());
  try {
    for (std::size_t i = 0; i < batch.columnCount(); ++i) {
      table->columns.push_back(arrayOf(exportedColumn(batch, i, form, memory), batch.rowCount()));
      table->pointers.push_back(&table->columns.back());
    }
  } catch (...) {
    for (ArrowArray& column : table->columns) {
      column.release(&column);
    }
    throw;
  }
  ArrowArray array{};
  array.length = static_cast<std::int64_t>(batch.rowCount());
  array.n_buffers = 1;
  array.buffers = table->buffers;
  array.n_children = static_cast<std::int64_t>(table->columns.size());
  array.children = table->pointers.data();
  array.release = &releaseTable;
  array.private_data = table.release();
  return OwnedArray(array);
}

void exportRows(const RowBatch& batch, const BatchForm& form, ArrayMemory& memory,
                std::vector<OwnedArray>& arrays) {
  if (form.texts == TextFormat::utf8 && batch.rowCount() > 1 && !fitsSmallOffsets(batch)) {
    const std::size_t half = batch.rowCount() / 2;
    exportRows(*batch.slice(0, half), form, memory, arrays);
    exportRows(*batch.slice(half, batch.rowCount()), form, memory, arrays);
    return;
  }
  arrays.push_back(exportedRows(batch, form, memory));
}

}  // namespace

OwnedArray::~OwnedArray() {
  if (m_array.release != nullptr) {
    m_array.release(&m_array);
  }
}

OwnedArray& OwnedArray::operator=(OwnedArray&& other) noexcept {
  std::swap(m_array, other.m_array);
  return *this;
}

ArrowArray OwnedArray::take() {
  return std::exchange(m_array, ArrowArray{});
}

std::vector<OwnedArray> exportedBatch(const RowBatch& batch, const BatchForm& form,
                                      ArrayMemory& memory) {
  std::vector<OwnedArray> arrays;
  const std::size_t rows = batch.rowCount();
  for (std::size_t begin = 0; begin < rows;) {
    const std::size_t end = rows - begin <= form.mostRows ? rows : begin + form.mostRows;
    if (end - begin == rows) {
      exportRows(batch, form, memory, arrays);
    } else {
      exportRows(*batch.slice(begin, end), form, memory, arrays);
    }
    begin = end;
  }
  return arrays;
}

std::unique_ptr<EncodedBatch> ArrowBatchEncoder::encode(const RowBatch& batch) const {
  auto encoded = std::make_unique<ArrowBatch>();
  encoded->arrays = exportedBatch(batch, m_form, m_memory);
  return encoded;
}

}  // namespace kelvarin

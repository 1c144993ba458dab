#include "library/arrow_streams/exported_batch.h"

#include <utility>

#include "host/contract/late_texts.h"
#include "library/arrow_streams/exported_texts.h"
#include "library/arrow_streams/untouched_numbers.h"

namespace kelvarin {

namespace {

template <typename Value>
std::unique_ptr<ExportedColumn> exportedValues(const RowBatch& batch, std::size_t index,
                                               const BatchColumn& column, const Value* values,
                                               bool isCopied, ArrayMemory& memory) {
  auto made = std::make_unique<ExportedColumn>();
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
    addNulls(rows, batch.rowCount(), made->nulls);
  }
  made->buffers = {rows};
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
  std::vector<std::unique_ptr<ExportedColumn>> columns;
  columns.reserve(batch.columnCount());
  for (std::size_t i = 0; i < batch.columnCount(); ++i) {
    columns.push_back(exportedColumn(batch, i, form, memory));
  }
  return arrayOfTable(std::move(columns), batch.rowCount());
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

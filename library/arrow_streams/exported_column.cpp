#include "library/arrow_streams/exported_column.h"

namespace kelvarin {

namespace {

struct Table {
  std::vector<ArrowArray> columns;
  std::vector<ArrowArray*> pointers;
  const void* buffers[1] = {nullptr};
};

// The last one sets `release` to null.
void releaseTable(ArrowArray* array) {
  for (std::int64_t i = 0; i < array->n_children; ++i) {
    if (array->children[i]->release != nullptr) {
      array->children[i]->release(array->children[i]);
    }
  }
  delete static_cast<Table*>(array->private_data);
  array->release = nullptr;
}

void releaseColumn(ArrowArray* array) {
  delete static_cast<ExportedColumn*>(array->private_data);
  array->release = nullptr;
}

ArrowArray arrayOf(std::unique_ptr<ExportedColumn> column, std::size_t rows) {
  column->buffers.insert(column->buffers.begin(), column->nulls.bits());
  ArrowArray array{};
  array.length = static_cast<std::int64_t>(rows);
  array.offset = static_cast<std::int64_t>(column->offset);
  array.null_count = column->nulls.count();
  array.n_buffers = static_cast<std::int64_t>(column->buffers.size());
  array.buffers = column->buffers.data();
  array.release = &releaseColumn;
  array.private_data = column.release();
  return array;
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

OwnedArray arrayOfTable(std::vector<std::unique_ptr<ExportedColumn>> columns, std::size_t rows) {
  auto table = std::make_unique<Table>();
  table->columns.reserve(columns.size());
  table->pointers.reserve(columns.size());
  try {
    for (std::unique_ptr<ExportedColumn>& column : columns) {
      table->columns.push_back(arrayOf(std::move(column), rows));
      table->pointers.push_back(&table->columns.back());
    }
  } catch (...) {
    for (ArrowArray& column : table->columns) {
      column.release(&column);
    }
    throw;
  }
  ArrowArray array{};
  array.length = static_cast<std::int64_t>(rows);
  array.n_buffers = 1;
  array.buffers = table->buffers;
  array.n_children = static_cast<std::int64_t>(table->columns.size());
  array.children = table->pointers.data();
  array.release = &releaseTable;
  array.private_data = table.release();
  return OwnedArray(array);
}

}  // namespace kelvarin

#include "host/contract/late_texts.h"

#include <algorithm>

namespace kelvarin {

namespace {

// What a column of texts that were late refers to.
struct MadeTexts {
  std::shared_ptr<const unsigned char[]> bytes;
  std::unique_ptr<std::uint32_t[]> positions;
};

}  // namespace

LateTexts::~LateTexts() = default;
LateNumbers::~LateNumbers() = default;

BatchColumn columnWithTexts(const BatchColumn& column, std::size_t storedRows,
                            const std::uint32_t* selection, std::size_t rowCount) {
  if (!column.isLate()) {
    return column;
  }
  if (column.lateNumbers() != nullptr) {
    return column.lateNumbers()->make(column.firstLate(), storedRows);
  }
  auto made = std::make_shared<MadeTexts>();
  // The first text is that of all rows that are not selected.
  made->positions = selection == nullptr
                        ? std::make_unique_for_overwrite<std::uint32_t[]>(storedRows)
                        : std::make_unique<std::uint32_t[]>(storedRows);
  std::size_t size = 0;
  made->bytes = column.lateTexts()->make({column.firstLate(), selection, rowCount},
                                         made->positions.get(), size);
  const unsigned char* bytes = made->bytes.get();
  const std::uint32_t* positions = made->positions.get();
  return BatchColumn::ofTexts(column.type(), std::move(made), bytes, positions, size);
}

std::vector<BatchColumn> columnsWithTexts(const std::vector<BatchColumn>& columns,
                                          std::size_t storedRows, const std::uint32_t* selection,
                                          std::size_t rowCount) {
  std::vector<BatchColumn> made;
  made.reserve(columns.size());
  for (const BatchColumn& column : columns) {
    made.push_back(columnWithTexts(column, storedRows, selection, rowCount));
  }
  return made;
}

bool hasLateTexts(const RowBatch& batch) {
  return std::ranges::any_of(batch.columns(), &BatchColumn::isLate);
}

RowBatchPointer withTexts(RowBatchPointer batch) {
  if (batch == nullptr || !hasLateTexts(*batch)) {
    return batch;
  }
  return std::make_shared<RowBatch>(batch->storedRows(),
                                    columnsWithTexts(batch->columns(), batch->storedRows(),
                                                     batch->selection(), batch->rowCount()),
                                    batch->sharedSelection(), batch->rowCount());
}

}  // namespace kelvarin

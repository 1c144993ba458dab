// Numbers that nobody looks at between the array that they came in and the one that they leave in:
// values and nulls stay what they were, and are shared.
//
// Used by: imported_batch.cpp, exported_batch.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <memory>

#include "host/contract/late_texts.h"
#include "library/arrow_streams/array_values.h"
#include "library/arrow_streams/exported_column.h"

namespace kelvarin {

class UntouchedNumbers final : public LateNumbers {
 public:
  // Aligned values of the type float64; `owner` keeps the array.
  UntouchedNumbers(const ArraySlice& rows, std::shared_ptr<const void> owner)
      : m_rows(rows), m_owner(std::move(owner)) {}

  BatchColumn make(std::size_t first, std::size_t count) const override;
  std::unique_ptr<ExportedColumn> exported(std::size_t first, std::size_t count) const;

 private:
  ArraySlice part(std::size_t first, std::size_t count) const;

  const ArraySlice m_rows;
  const std::shared_ptr<const void> m_owner;
};

}  // namespace kelvarin

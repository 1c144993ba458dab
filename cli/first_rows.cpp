#include "cli/first_rows.h"

#include <algorithm>

#include "cli/console.h"

namespace kelvarin {

bool FirstRows::take(const RowBatchPointer& batch) {
  const auto rows = std::min(m_rowsLeft, static_cast<std::int64_t>(batch->rowCount()));
  m_printer->print(*batch->slice(0, static_cast<std::size_t>(rows)));
  m_rowsLeft -= rows;
  return m_rowsLeft > 0 && !isOutputClosed();
}

}  // namespace kelvarin

// The first rows of a run, printed as they come.
//
// Used by `kelvarin head` and `kelvarin run --preview`.
// Threads: those of RowTaker.
#pragma once

#include <cstdint>
#include <optional>

#include "cli/row_printer.h"
#include "cli/taken_rows.h"

namespace kelvarin {

class FirstRows final : public RowTaker {
 public:
  FirstRows(RowFormat format, std::int64_t count) : m_format(format), m_rowsLeft(count) {}

  void begin(const OneRow& columns, TaskPool*) override { m_printer.emplace(m_format, columns); }
  bool take(const RowBatchPointer& batch) override;
  // When the run has ended.
  void finish() {
    if (m_printer) {
      m_printer->finish();
    }
  }

 private:
  const RowFormat m_format;
  std::int64_t m_rowsLeft;
  std::optional<RowPrinter> m_printer;
};

}  // namespace kelvarin

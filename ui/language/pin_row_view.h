// Rows of a pin as the rows that an evaluator reads, without copying their values.
//
// Threads: one at a time.
#pragma once

#include "host/contract/one_row.h"
#include "host/contract/pin_out_meta_data.h"
#include "host/contract/pin_rows.h"

namespace kelvarin {

class PinRowView {
 public:
  explicit PinRowView(const PinColumns& columns);
  PinRowView(const PinRowView&) = delete;
  PinRowView& operator=(const PinRowView&) = delete;

  // The columns, and the values of the row that was shown last; before, all are missing.
  const OneRow& row() const { return m_row; }
  // A row with these columns. Its values are read, never written.
  const OneRow& show(const PinRows& rows, std::size_t row);

 private:
  PinOutMetaData m_metaData;
  OneRow m_row;
};

}  // namespace kelvarin

// Parses the short numbers among the fields of a column, several at once where the processor can.
//
// Used by: FieldConverter, which parses what is left one by one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/tables/csv/csv_block.h"

namespace kelvarin {

inline constexpr std::size_t kShortDecimalsAtOnce = 64;

// Of at most kShortDecimalsAtOnce rows of `block` from `row` on, `values` gets those fields that
// are empty, and so missing, or numbers of at most eight bytes: digits, with a minus and a point
// where they may be, and no digits after a leading zero. The result has a bit for each of them.
std::uint64_t parseShortDecimals(const CsvBlock& block, std::size_t column, long long row,
                                 std::size_t rowCount, double* values);

}  // namespace kelvarin

// Some of the rows that are evaluated at once: their values brought together, and put back.
//
// Used where a part of an expression is computed for the rows that ask for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "expression/functions/column_call.h"

namespace kelvarin {

using RowIndex = std::uint16_t;
// In ascending order.
using SelectedRows = std::span<const RowIndex>;

// Where the results of a step are stored; the other pointer is null.
struct RegisterColumn {
  double* numbers = nullptr;
  ColumnText* texts = nullptr;
};

// The rows in which the condition is true, or those in which it is not. `selection` can hold
// all of them.
SelectedRows selectRows(const double* condition, bool isWanted, std::size_t rows,
                        RowIndex* selection);

void copyRows(const ColumnArgument& from, std::size_t rows, const RegisterColumn& to);
void gatherRows(const ColumnArgument& from, SelectedRows rows, const RegisterColumn& to);
// Puts the values to where they were gathered from.
void scatterRows(const ColumnArgument& from, SelectedRows rows, const RegisterColumn& to);
// The same for numbers that count as conditions, as 1 and 0.
void scatterTruths(const double* from, SelectedRows rows, double* to);

}  // namespace kelvarin

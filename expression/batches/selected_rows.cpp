#include "expression/batches/selected_rows.h"

#include <algorithm>

#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

template <typename Value>
void gather(const Value* from, SelectedRows rows, Value* to) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    to[i] = from[rows[i]];
  }
}

template <typename Value>
void scatter(const Value* from, SelectedRows rows, Value* to) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    to[rows[i]] = from[i];
  }
}

}  // namespace

// Without a branch, which would be guessed wrong.
SelectedRows selectRows(const double* condition, bool isWanted, std::size_t rows,
                        RowIndex* selection) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < rows; ++i) {
    selection[count] = static_cast<RowIndex>(i);
    count += jit::isTruth(condition[i]) == isWanted ? 1 : 0;
  }
  return {selection, count};
}

void copyRows(const ColumnArgument& from, std::size_t rows, const RegisterColumn& to) {
  if (to.texts != nullptr) {
    std::copy_n(from.texts, rows, to.texts);
  } else {
    std::copy_n(from.numbers, rows, to.numbers);
  }
}

void gatherRows(const ColumnArgument& from, SelectedRows rows, const RegisterColumn& to) {
  if (to.texts != nullptr) {
    gather(from.texts, rows, to.texts);
  } else {
    gather(from.numbers, rows, to.numbers);
  }
}

void scatterRows(const ColumnArgument& from, SelectedRows rows, const RegisterColumn& to) {
  if (to.texts != nullptr) {
    scatter(from.texts, rows, to.texts);
  } else {
    scatter(from.numbers, rows, to.numbers);
  }
}

void scatterTruths(const double* from, SelectedRows rows, double* to) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    to[rows[i]] = jit::numberOf(jit::isTruth(from[i]));
  }
}

}  // namespace kelvarin

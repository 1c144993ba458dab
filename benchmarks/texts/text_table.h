// Rows of texts, dates and numbers, in the forms in which they are read: batches for this system,
// strings for plain loops and for single rows.
//
// `s` and `t` are short texts, `p` is padded with blanks, `d` is a date as a text, `a` and `e` are
// numbers.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "host/contract/one_row.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

struct TextTable {
  enum Text : std::size_t { s, t, p, d, kTexts };
  enum Number : std::size_t { a, e, kNumbers };

  static constexpr std::array<const char*, kTexts> kTextNames = {"s", "t", "p", "d"};
  static constexpr std::array<const char*, kNumbers> kNumberNames = {"a", "e"};

  std::array<std::vector<std::string>, kTexts> texts;
  std::array<std::vector<double>, kNumbers> numbers;
  std::vector<RowBatchPointer> batches;  // the texts first

  std::size_t rows() const { return numbers[a].size(); }
  // To be called when all columns are filled; they stay as they are.
  void makeBatches();
};

// The columns of the batches.
void announceColumns(OneRow& columns);

}  // namespace kelvarin

// What a calculator knows of its output rows ahead: the columns of its input, and results that are
// evaluated already.
//
// Offered to the consumers of the output pin.
#pragma once

#include <cstddef>
#include <vector>

#include "expression/evaluator/batch_evaluation.h"
#include "host/contract/rows_in_hand.h"

namespace kelvarin {

class ComputedRows final : public RowsInHand {
 public:
  void setColumnCount(std::size_t count) { m_results.assign(count, Column{}); }
  // The column is an output's; without values it is known row by row only.
  void setResults(int column, ColumnResults results) {
    m_results[static_cast<std::size_t>(column)] = {true, results};
  }
  void setInput(const RowsAhead& input) { m_input = input; }

  const double* numbers(int column, std::size_t first, std::size_t count,
                        double* buffer) const override {
    const Column& known = m_results[static_cast<std::size_t>(column)];
    return known.isOutput ? valuesOf<double>(known, first)
                          : m_input.numbers(column, first, count, buffer);
  }
  const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                            std::uint32_t* buffer) const override {
    const Column& known = m_results[static_cast<std::size_t>(column)];
    return known.isOutput ? valuesOf<std::uint32_t>(known, first)
                          : m_input.keys(column, first, count, buffer);
  }
  const unsigned char* const* texts(int column, std::size_t first, std::size_t count,
                                    const unsigned char** buffer) const override {
    const Column& known = m_results[static_cast<std::size_t>(column)];
    return known.isOutput ? nullptr : m_input.texts(column, first, count, buffer);
  }

 private:
  struct Column {
    bool isOutput = false;
    ColumnResults results;
  };

  template <typename Value>
  static const Value* valuesOf(const Column& column, std::size_t first) {
    const unsigned char* values = column.results.values;
    return values == nullptr ? nullptr : reinterpret_cast<const Value*>(values) + first;
  }

  std::vector<Column> m_results;
  RowsAhead m_input;
};

}  // namespace kelvarin
